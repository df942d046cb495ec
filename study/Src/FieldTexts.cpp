#include "FieldTexts.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "XmlCharacters.h"

namespace zelk {

namespace {

constexpr std::pair<std::string_view, char32_t> references[] = {{"lt", U'<'},   {"gt", U'>'},    {"amp", U'&'},
                                                                {"quot", U'"'}, {"apos", U'\''}, {"nbsp", 0xA0}};
constexpr char32_t noBreakSpace = 0xA0;

std::optional<char32_t> referred(std::string_view name) {
    for (const auto& [known, character] : references) {
        if (name == known)
            return character;
    }
    if (!name.starts_with('#'))
        return {};
    const bool isHex = name.starts_with("#x") || name.starts_with("#X");
    name.remove_prefix(isHex ? 2 : 1);
    uint32_t code = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
    if (error != std::errc() || end != name.data() + name.size() || code == 0 || code > 0x10FFFF ||
        (code >= 0xD800 && code <= 0xDFFF))
        return {};
    return code;
}

std::string read(std::string_view run) {
    constexpr size_t longestReference = 10;
    std::string text;
    for (size_t at = 0; at < run.size();) {
        const size_t end = run[at] == '&' ? run.substr(at, longestReference).find(';') : run.npos;
        const std::optional<char32_t> character =
            end == run.npos ? std::nullopt : referred(run.substr(at + 1, end - 1));
        if (character) {
            xml2swf::appendUtf8(text, *character);
            at += end + 1;
        } else {
            text += run[at++];
        }
    }
    return text;
}

} // namespace

std::vector<HtmlRun> htmlRuns(std::string_view markup) {
    std::vector<HtmlRun> runs;
    for (size_t at = 0; at < markup.size();) {
        if (markup[at] == '<') {
            const size_t end = markup.find('>', at);
            at = end == markup.npos ? markup.size() : end + 1;
            continue;
        }
        const size_t end = std::min(markup.find('<', at), markup.size());
        const std::string_view run = markup.substr(at, end - at);
        if (run.find_first_not_of(" \t\r\n") != run.npos)
            runs.push_back({at, end, read(run)});
        at = end;
    }
    return runs;
}

std::string asHtml(std::string_view text) {
    static const std::string space = [] {
        std::string bytes;
        xml2swf::appendUtf8(bytes, noBreakSpace);
        return bytes;
    }();
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        switch (text[at]) {
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '&': result += "&amp;"; break;
        default:
            if (text.substr(at, space.size()) == space) {
                result += "&nbsp;";
                at += space.size() - 1;
            } else {
                result += text[at];
            }
        }
    }
    return result;
}

} // namespace zelk
