#include "TextFiles.h"

#include <algorithm>
#include <cmath>

#include "SwfTagCodes.h"
#include "TextFormats.h"

namespace zelk {

std::optional<TextFileKind> textFileKind(std::string_view fileName) {
    const size_t dot = fileName.rfind('.');
    std::string extension(dot == fileName.npos ? "" : fileName.substr(dot + 1));
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (extension == "po" || extension == "pot")
        return TextFileKind::po;
    if (extension == "csv")
        return TextFileKind::csv;
    if (extension == "json")
        return TextFileKind::json;
    return {};
}

std::string writeTexts(const std::vector<MovieText>& texts, TextFileKind kind, std::string_view movieName) {
    switch (kind) {
    case TextFileKind::po: return writePo(texts, movieName);
    case TextFileKind::csv: return writeCsv(texts);
    case TextFileKind::json: return writeJsonTexts(texts, movieName);
    }
    return {};
}

std::vector<NewText> readTexts(std::string_view content, TextFileKind kind) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (content.starts_with(byteOrderMark))
        content.remove_prefix(byteOrderMark.size());
    switch (kind) {
    case TextFileKind::po: return readPo(content);
    case TextFileKind::csv: return readCsv(content);
    case TextFileKind::json: return readJsonTexts(content);
    }
    return {};
}

std::string tagContext(const MovieText& text) {
    std::string result = libswf::tagName(text.tagCode);
    if (text.id)
        result += " " + std::to_string(*text.id);
    if (text.sprite)
        result += ", sprite " + std::to_string(*text.sprite);
    result += ", frame " + std::to_string(text.frame);
    if (text.font)
        result += ", font " + std::to_string(*text.font) + (text.fontName.empty() ? "" : " (" + text.fontName + ")");
    return result;
}

std::string limitText(const MovieText& text) {
    const auto pixels = [](double value) { return std::to_string(std::lround(value)); };
    if (text.maxLength)
        return "at most " + std::to_string(*text.maxLength) + " characters";
    if (text.room)
        return pixels(text.room->taken) + " of " + pixels(text.room->most) + " px wide";
    return {};
}

} // namespace zelk
