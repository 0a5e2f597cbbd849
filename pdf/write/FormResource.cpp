#include "pdf/write/FormResource.h"

#include "pdf/write/PaintWriter.h"

#include <span>
#include <string>
#include <utility>

namespace quillon::pdf {

FormResource::FormResource(PaintContent content, const Rectangle& bounds)
    : content_(std::move(content)), bounds_(bounds) {}

std::uint32_t FormResource::write(PaintWriter& writer) const {
    std::string entries = "/Type/XObject/Subtype/Form/BBox";
    writeRectangle(entries, bounds_);
    entries += "/Resources";
    const auto needed = writer.neededBy(std::span(&content_, 1));
    const std::string prefix = writer.writeResources({}, needed, PaintWriter::Origin::output(), entries);
    return writer.addContent(entries, writer.text(content_, prefix));
}

std::uint32_t OpacityResource::write(PaintWriter& writer) const {
    std::string body = "<</ca ";
    writeReal(body, alpha_);
    body += "/CA ";
    writeReal(body, alpha_);
    body += ">>";
    return writer.sink().addObject(body);
}

}  // namespace quillon::pdf
