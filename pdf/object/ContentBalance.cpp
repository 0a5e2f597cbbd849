#include "pdf/object/ContentBalance.h"

#include "pdf/object/Characters.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon::pdf {

namespace {

/// What may begin at a byte. Numbers, by far the most of any content, end nothing and are passed over byte by byte.
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

constexpr auto stringStops = [] {
    std::array<bool, 256> stops{};
    for (const char c : std::string_view("()\\")) stops[static_cast<unsigned char>(c)] = true;
    return stops;
}();

class Scanner {
public:
    explicit Scanner(std::string_view text) noexcept : text_(text) {}

    bool run() noexcept {
        while (at_ < text_.size()) {
            const Start start = starts[static_cast<unsigned char>(text_[at_])];
            if (start == Start::Blank || start == Start::Operand) {
                operandsLeft_ = operandsLeft_ || start == Start::Operand;
                ++at_;
                continue;
            }
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
            case Start::Blank:
            case Start::Operand:
                break;
        }
        operandsLeft_ = true;
        return open_ >= 0;
    }

    void skipRegular() noexcept {
        while (at_ < text_.size() && isRegular(text_[at_])) ++at_;
    }

    /// As skipLiteralString, but made for the short strings that are most of any text.
    bool string() noexcept {
        int depth = 0;
        while (at_ < text_.size()) {
            const char c = text_[at_++];
            if (!stringStops[static_cast<unsigned char>(c)]) continue;
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
