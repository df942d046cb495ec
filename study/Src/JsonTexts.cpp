#include <nlohmann/json.hpp>

#include "SwfTagCodes.h"
#include "TextFormats.h"

namespace zelk {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(const MovieText& text) {
    Json json = {{"key", text.key},
                 {"kind", kindText(text.kind)},
                 {"tag", libswf::tagName(text.tagCode)},
                 {"frame", text.frame}};
    if (text.id)
        json["id"] = *text.id;
    if (text.sprite)
        json["sprite"] = *text.sprite;
    if (text.font)
        json["font"] = *text.font;
    if (!text.fontName.empty())
        json["fontName"] = text.fontName;
    if (!text.place.empty())
        json["place"] = text.place;
    if (text.maxLength)
        json["maxLength"] = *text.maxLength;
    if (text.room)
        json["room"] = {{"taken", text.room->taken}, {"most", text.room->most}};
    json["text"] = text.text;
    json["translation"] = "";
    return json;
}

} // namespace

std::string writeJsonTexts(const std::vector<MovieText>& texts, std::string_view movieName) {
    Json list = Json::array();
    for (const MovieText& text : texts)
        list.push_back(toJson(text));
    const Json json = {{"movie", movieName}, {"texts", std::move(list)}};
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n"; // the movie's name may be no UTF-8
}

std::vector<NewText> readJsonTexts(std::string_view content) {
    try {
        const Json json = Json::parse(content);
        std::vector<NewText> changes;
        for (const Json& text : json.at("texts")) {
            const std::string translation = text.value("translation", "");
            if (!translation.empty())
                changes.push_back({text.at("key"), text.at("text"), translation});
        }
        return changes;
    } catch (const Json::exception& error) {
        throw TextFileError(error.what(), 0);
    }
}

} // namespace zelk
