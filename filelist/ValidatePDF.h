#pragma once

namespace quillon {

/// Tells PDF files by how they begin.
class ValidatePDF {
public:
    ValidatePDF() = delete;

    /// Whether the first four bytes of the file are "%PDF". Nothing else of it is looked at. False for what cannot be
    /// read and for everything but regular files, which are not even opened: reading a FIFO would wait for its writer.
    /// `path` is in the encoding of the file system.
    [[nodiscard]] static bool isPDFValidate(const char* path);
};

}  // namespace quillon
