#include "pdf/join/Unfolded.h"

#include <map>
#include <string_view>

namespace quillon::pdf {

namespace {

class Unfolder {
public:
    explicit Unfolder(const SourceCopies& source) : source_(source) {}

    std::string unfold(const Object& value) {
        add(value, 0);
        return std::move(text_);
    }

private:
    static constexpr int deepest = 8;
    static constexpr std::size_t longest = 256 * 1024;

    void add(const Object& value, int depth) {
        if (depth > deepest || text_.size() > longest) {
            text_ += "!" + std::to_string(source_.ordinal);  // equal to nothing of another file
        } else if (const Reference* reference = value.reference()) {
            const auto object = source_.reader().findWhole(*reference);
            if (object && object->streamData()) {
                text_ += source_.copied(value);  // equal streams are one
            } else {
                add(source_.reader().resolve(value), depth + 1);
            }
        } else if (const Array* array = value.array()) {
            text_ += '[';
            for (const Object& element : *array) add(element, depth + 1);
            text_ += ']';
        } else if (const Dictionary* dictionary = value.dictionary()) {
            std::map<std::string_view, const Object*> sorted;
            for (const auto& [key, entry] : dictionary->entries()) sorted[key] = &entry;
            text_ += "<<";
            for (const auto& [key, entry] : sorted) {
                writeName(text_, key);
                add(*entry, depth + 1);
            }
            text_ += ">>";
        } else {
            text_ += ' ';
            value.write(text_);
        }
    }

    const SourceCopies& source_;
    std::string text_;
};

}  // namespace

std::string unfolded(const SourceCopies& source, const Object& value) {
    return Unfolder(source).unfold(value);
}

}  // namespace quillon::pdf
