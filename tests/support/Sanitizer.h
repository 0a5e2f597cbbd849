#pragma once

namespace quillon::test {

/// Whether the tests run with a sanitizer that has its own allocator, takes most of the address space for itself and
/// makes everything several times slower.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

}  // namespace quillon::test
