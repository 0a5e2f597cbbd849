#include "pdf/object/ContentBalance.h"

#include "pdf/object/Characters.h"
#include "pdf/object/StopFinder.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon::pdf {

namespace {

/// What may begin at a byte. Numbers and the blanks between them, by far the most of any content, end nothing and are
/// passed over many at a time.
enum class Start : std::uint8_t { Blank, Operand, Keyword, Name, String, Angle, Open, Close, CloseAngle, Comment };

constexpr auto starts = [] {
    std::array<Start, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool blank = isWhiteSpace(static_cast<char>(i));
        table[i] = blank ? Start::Blank : Start::Keyword;
    }
    const auto set = [&table](std::string_view bytes, Start start) {
        for (const char c : bytes) table[static_cast<unsigned char>(c)] = start;
    };
    set("0123456789+-.", Start::Operand);
    set("/", Start::Name);
    set("(", Start::String);
    set("<", Start::Angle);
    set("[", Start::Open);
    set("]", Start::Close);
    set(">", Start::CloseAngle);
    set("%", Start::Comment);
    return table;
}();

class Scanner {
public:
    explicit Scanner(std::string_view text) noexcept : text_(text), numbers_(text), strings_(text) {}

    bool run() noexcept {
        while (true) {
            const std::size_t begin = at_;
            at_ = numbers_.findOther(at_);
            const Start start = at_ < text_.size() ? startAt(at_) : Start::Blank;
            // Whatever else follows says itself whether there are operands.
            if (start == Start::Blank || start == Start::Comment) noteOperands(begin);
            if (at_ == text_.size()) break;
            if (!step(start)) return false;
        }
        return saved_ == 0 && marked_ == 0 && open_ == 0 && !inText_ && !operandsLeft_;
    }

private:
    bool step(Start start) noexcept {
        switch (start) {
            case Start::Keyword:
                return keyword();
            case Start::Comment:
                return comment();
            case Start::String:
                operandsLeft_ = true;
                return string();
            case Start::Angle:
                return angle();
            case Start::Name:
                ++at_;
                skipRegular();
                break;
            case Start::Open:
                ++open_;
                ++at_;
                break;
            case Start::Close:
                --open_;
                ++at_;
                break;
            case Start::CloseAngle:
                if (text_.substr(at_, 2) != ">>") return false;
                --open_;
                at_ += 2;
                break;
            case Start::Blank:  // a zero byte
                ++at_;
                return true;
            case Start::Operand:
                break;
        }
        operandsLeft_ = true;
        return open_ >= 0;
    }

    [[nodiscard]] Start startAt(std::size_t place) const noexcept {
        return starts[static_cast<unsigned char>(text_[place])];
    }

    /// Looks for numbers from `begin` up to the present place.
    void noteOperands(std::size_t begin) noexcept {
        for (std::size_t i = begin; i < at_; ++i) operandsLeft_ = operandsLeft_ || startAt(i) == Start::Operand;
    }

    void skipRegular() noexcept {
        while (at_ < text_.size() && isRegular(text_[at_])) ++at_;
    }

    /// As skipLiteralString, but it goes on with the bytes that were looked at for the string before.
    bool string() noexcept {
        int depth = 0;
        while (at_ < text_.size()) {
            at_ = strings_.find(at_);
            if (at_ == text_.size()) break;
            const char c = text_[at_++];
            if (c == '\\') {
                ++at_;
            } else if (c == '(') {
                ++depth;
            } else if (--depth == 0) {
                return true;
            }
        }
        return false;
    }

    /// Without the end of its line a comment would swallow what follows.
    bool comment() noexcept {
        at_ = text_.find_first_of("\r\n", at_);
        return at_ != std::string_view::npos;
    }

    bool angle() noexcept {
        operandsLeft_ = true;
        if (text_.substr(at_, 2) == "<<") {
            ++open_;
            at_ += 2;
            return true;
        }
        at_ = text_.find('>', at_);
        if (at_ == std::string_view::npos) return false;
        ++at_;
        return true;
    }

    bool keyword() noexcept {
        const std::size_t begin = at_++;
        skipRegular();
        const std::string_view word = text_.substr(begin, at_ - begin);
        if (open_ != 0) return word == "true" || word == "false" || word == "null";
        operandsLeft_ = word == "true" || word == "false" || word == "null";
        if (word == "q") {
            ++saved_;
        } else if (word == "Q") {
            return --saved_ >= 0;
        } else if (word == "BT" || word == "ET") {
            const bool begins = word == "BT";
            if (inText_ == begins) return false;
            inText_ = begins;
        } else if (word == "BMC" || word == "BDC") {
            ++marked_;
        } else if (word == "EMC") {
            return --marked_ >= 0;
        } else if (word == "ID") {
            return imageData();
        }
        return true;
    }

    /// The data of an inline image (8.9.7) ends with `EI` between white space. Where that stands in the data itself,
    /// what remains of them is taken for operators, which hardly ever makes sense.
    bool imageData() noexcept {
        for (std::size_t end = at_; (end = text_.find("EI", end)) != std::string_view::npos; ++end) {
            const bool closed = end + 2 == text_.size() || isWhiteSpace(text_[end + 2]);
            if (!closed || !isWhiteSpace(text_[end - 1])) continue;
            at_ = end + 2;
            return true;
        }
        return false;
    }

    std::string_view text_;
    StopFinder<'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '+', '-', '.', ' ', '\t', '\n', '\f', '\r'> numbers_;
    StopFinder<'(', ')', '\\'> strings_;
    std::size_t at_ = 0;
    std::int64_t saved_ = 0;
    std::int64_t marked_ = 0;
    std::int64_t open_ = 0;  // arrays and dictionaries
    bool inText_ = false;
    bool operandsLeft_ = false;
};

}  // namespace

bool isBalanced(std::string_view content) noexcept {
    return Scanner(content).run();
}

}  // namespace quillon::pdf
