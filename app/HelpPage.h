#pragma once

#include <QUrl>

namespace quillon {

/// The first page of the program's help, a local file beside the program as it is built or installed.
[[nodiscard]] QUrl helpPage();

}  // namespace quillon
