#pragma once

namespace quillon {

/// The version of the platform services that the program runs on. Callers compare it with 1038.0 to choose between the
/// newer and the older form of an operation; here it is past that, so the newer form is always taken.
inline constexpr double toolkitVersion = 1138.0;

}  // namespace quillon
