#include "pdf/write/ObjectStreamIndex.h"

#include <cassert>
#include <charconv>

namespace quillon::pdf {

void writeObjectStreamIndex(std::span<const PackedObject> objects, std::string& body) noexcept {
    assert(body.size() >= indexBytesOfObject * objects.size());
    char* at = body.data();
    char* const end = at + body.size();
    for (const PackedObject& object : objects) {
        for (const std::uint32_t value : {object.number, object.offset}) {
            at = std::to_chars(at, end, value).ptr + 1;  // a blank is there already
        }
    }
}

}  // namespace quillon::pdf
