#pragma once

#include <QStringList>

namespace quillon::test {

/// Makes every warning of Qt that a test does not take with `take` fail that test. Set up by the tests' main function.
class QtWarnings {
public:
    QtWarnings() = delete;

    static void install();

    /// The warnings since the last call, for a test that expects some.
    [[nodiscard]] static QStringList take();
};

}  // namespace quillon::test
