#include "platform/text/TextAttributes.h"

namespace quillon {

TextAttributes attributesWithObjectsAndKeys(std::initializer_list<std::pair<QVariant, QString>> objectsAndKeys) {
    TextAttributes attributes;
    for (const auto& [object, key] : objectsAndKeys) {
        if (!object.isValid()) break;
        attributes.insert(key, object);
    }
    return attributes;
}

}  // namespace quillon
