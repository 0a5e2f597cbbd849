#include "pdf/filter/Filters.h"

#include "pdf/filter/Flate.h"
#include "pdf/filter/Predictor.h"
#include "pdf/filter/TextFilters.h"

namespace quillon::pdf {

namespace {

std::optional<std::string> decodeOne(const Name& filter, const Dictionary& parameters, std::string_view data,
                                     std::size_t limit) {
    const std::string& name = filter.value;
    if (name == "FlateDecode" || name == "Fl") {
        auto out = inflate(data, limit);
        if (out) out = undoPrediction(parameters, std::move(*out));
        return out;
    }
    if (name == "LZWDecode" || name == "LZW") {
        auto out = decodeLzw(data, parameters["EarlyChange"].integer().value_or(1) != 0, limit);
        if (out) out = undoPrediction(parameters, std::move(*out));
        return out;
    }
    if (name == "ASCIIHexDecode" || name == "AHx") return decodeAsciiHex(data);
    if (name == "ASCII85Decode" || name == "A85") return decodeAscii85(data);
    if (name == "RunLengthDecode" || name == "RL") return decodeRunLength(data, limit);
    return std::nullopt;
}

}  // namespace

std::optional<std::string> decodeStream(const Dictionary& dictionary, std::string_view data, std::size_t limit) {
    static const Dictionary noParameters;
    constexpr std::size_t mostFilters = 8;
    const Object& filter = dictionary["Filter"];
    const Object& parameters = dictionary["DecodeParms"];
    if (filter.isNull()) return std::string(data);
    const Array filters = filter.array() ? *filter.array() : Array{filter};
    const Array parameterList = parameters.array() ? *parameters.array() : Array{parameters};
    if (filters.size() > mostFilters) return std::nullopt;
    std::optional<std::string> out;
    for (std::size_t i = 0; i < filters.size(); ++i) {
        const Dictionary* own = i < parameterList.size() ? parameterList[i].dictionary() : nullptr;
        if (!filters[i].name()) return std::nullopt;
        const std::string previous = out ? std::move(*out) : std::string();
        out =
            decodeOne(*filters[i].name(), own ? *own : noParameters, i == 0 ? data : std::string_view(previous), limit);
        if (!out) return std::nullopt;
    }
    if (!out) out = std::string(data);
    return out;
}

}  // namespace quillon::pdf
