#pragma once

#include "platform/text/TextAttributes.h"

#include <QString>

#include <cstdint>

namespace quillon {

/// What is painted over the pages of the document that is being written: one state for the whole process, off and empty
/// when the program starts.
///
/// Nothing is locked. The state is set on the main thread while the merge job waits, and read by the job while its
/// pages are drawn; only one merge writes at a time.
class Utility {
public:
    Utility() = delete;

    static void setShouldAddWaterMark() { shouldAddWatermark_ = true; }
    static void resetShouldAddwaterMark() { shouldAddWatermark_ = false; }
    [[nodiscard]] static bool shouldAddWaterMark() { return shouldAddWatermark_; }

    /// The watermark's text; a null string until it is first set.
    static void setWatermarkContent(const QString& content) { content_ = content; }
    [[nodiscard]] static const QString& waterMarkContent() { return content_; }

    static void setShouldaddPageNumber(bool shouldAdd) { shouldAddPageNumber_ = shouldAdd; }
    [[nodiscard]] static bool shouldAddPageNumber() { return shouldAddPageNumber_; }

    static void setPageNumberPrefixString(const QString& prefix) { pageNumberPrefixString_ = prefix; }

    /// The first number and the step to each next one. Also starts counting anew, so it is called before each document
    /// is written, even with unchanged values.
    static void setPageNumberBegin(std::int32_t begin, std::int32_t Offset);

    static void setPageNumberStringAttri(const TextAttributes& attributes) { attribute_ = attributes; }
    [[nodiscard]] static const TextAttributes& pageNumberStringAttri() { return attribute_; }

    /// 0 left, 1 middle, 2 right. Any other code is stored as it is and stops the program when a number is painted.
    static void setPageNUmberPosition(std::uint32_t position) { position_ = position; }
    [[nodiscard]] static std::uint32_t getPageNumberPosition() { return position_; }

    /// The prefix, a space and the next number. Every call moves on to the number after it; past the ends of the 32-bit
    /// range the numbers wrap around.
    [[nodiscard]] static QString pageNumberString();

private:
    inline static bool shouldAddWatermark_ = false;
    inline static QString content_;
    inline static bool shouldAddPageNumber_ = false;
    inline static QString pageNumberPrefixString_;
    inline static std::int32_t begin_ = 0;
    inline static std::int32_t offset_ = 0;
    inline static std::int32_t timeOfOffset_ = 0;  // numbers given since setPageNumberBegin
    inline static TextAttributes attribute_;
    inline static std::uint32_t position_ = 0;
};

}  // namespace quillon
