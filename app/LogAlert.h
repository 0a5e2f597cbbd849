#pragma once

#include <QString>

namespace quillon {

/// A warning that must be answered before anything else. Main thread only.
class LogAlert {
public:
    LogAlert() = delete;

    /// Shows `withText` above one button, whose title is `message`, and returns when it was pressed.
    static void AlertOKWithMessage(const QString& message, const QString& withText);
};

}  // namespace quillon
