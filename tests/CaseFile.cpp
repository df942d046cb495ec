#include "CaseFile.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

#include "CaseFlags.h"

namespace {

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t");
    return first == text.npos ? std::string_view() : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

uint32_t number(std::string_view text, uint32_t high) {
    uint32_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || value > high)
        throw std::runtime_error("\"" + std::string(text) + "\" is not a number up to " + std::to_string(high));
    return value;
}

void readFailure(CaseFile& file, std::string_view value) {
    const size_t blank = value.find(' ');
    const std::string_view kind = value.substr(0, blank);
    static const std::map<std::string_view, CaseFile::Fails> kinds = {
        {"read", CaseFile::Fails::read}, {"write", CaseFile::Fails::write}, {"xml", CaseFile::Fails::xml}};
    if (kinds.count(kind) == 0 || blank == value.npos)
        throw std::runtime_error("fails takes read, write or xml and a code or text");
    file.fails = kinds.at(kind);
    std::string_view what = trimmed(value.substr(blank));
    if (what.size() > 1 && what.front() == '"' && what.back() == '"')
        what = what.substr(1, what.size() - 2);
    file.failure = what;
}

// A keyword that stands with its value on one line.
bool readValue(CaseFile& file, std::string_view keyword, std::string_view value) {
    if (keyword == "tag")
        file.tag = static_cast<uint16_t>(number(value, 1023));
    else if (keyword == "version")
        file.version = static_cast<uint8_t>(number(value, 255));
    else if (keyword == "gives")
        file.gives = static_cast<uint16_t>(number(value, 1023));
    else if (keyword == "form" && value == "full")
        file.fullForm = true;
    else if (keyword == "keepraw")
        file.keepRaw = true;
    else if (keyword == "braces")
        return true; // casesOfFlags has seen to it
    else if (keyword == "padded")
        file.padded = true;
    else if (keyword == "fields")
        file.fields = value;
    else if (keyword == "kept")
        file.kept = value;
    else if (keyword == "warns")
        file.warns.emplace_back(value);
    else if (keyword == "fails")
        readFailure(file, value);
    else
        return false;
    return true;
}

// Where the element whose last tag ends at `end` starts. No element of its name stands in it.
size_t startOf(std::string_view text, size_t end) {
    size_t start = text.rfind('<', end);
    if (text.at(start + 1) != '/')
        return start;
    const std::string name = "<" + std::string(text.substr(start + 2, end - start - 2));
    do {
        start = text.rfind(name, start - 1);
    } while (text.at(start + name.size()) != '>' && text.at(start + name.size()) != ' ');
    return start;
}

// "<a/>*3" stands for three elements.
std::string repeatedElements(std::string_view text) {
    std::string result;
    for (size_t star; (star = text.find(">*")) != text.npos;) {
        const size_t end = std::min(text.find_first_not_of("0123456789", star + 2), text.size());
        const size_t start = startOf(text, star);
        const uint32_t times = number(text.substr(star + 2, end - star - 2), 1 << 16);
        result += text.substr(0, start);
        for (uint32_t i = 0; i < times; ++i)
            result += text.substr(start, star + 1 - start);
        text.remove_prefix(end);
    }
    return result + std::string(text);
}

// Puts in the end tags of the elements that are known to end by the indentation: a line that is a start tag and nothing
// else holds the deeper lines behind it.
std::string withEndTags(const std::string& content) {
    std::string result;
    std::vector<std::pair<size_t, std::string>> open; // indentation and name
    const auto close = [&](size_t indentation, std::string_view line) {
        for (; !open.empty() && open.back().first >= indentation; open.pop_back()) {
            const std::string end = "</" + open.back().second + ">";
            if (open.back().first != indentation || !line.starts_with(end))
                result += std::string(open.back().first, ' ') + end + "\n";
        }
    };
    std::istringstream lines(content);
    std::string line, before; // the one before, if it is a start tag
    size_t beforeAt = 0;
    while (std::getline(lines, line)) {
        const size_t at = std::min(line.find_first_not_of(' '), line.size());
        const std::string_view text = std::string_view(line).substr(at);
        if (!before.empty() && at > beforeAt)
            open.emplace_back(beforeAt, before.substr(1, before.find_first_of(" >") - 1));
        else if (!text.empty())
            close(at, text);
        const bool isStart = text.starts_with('<') && text.find('>') == text.size() - 1 &&
                             std::isalpha(static_cast<unsigned char>(text[1])) && !text.ends_with("/>");
        before = isStart ? text : std::string_view();
        beforeAt = at;
        result += line + "\n";
    }
    close(0, {});
    if (!result.empty()) // as the content, without a line feed at the end
        result.pop_back();
    return result;
}

// "READ => WRITTEN" on a line stands for bytes that are written as others, "READ ~> WRITTEN" for those that are only
// after they were XML.
void readBody(CaseFile& file, const std::string& content) {
    file.body.emplace();
    Bytes saved, compiled;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        line.resize(std::min(line.size(), line.find('#')));
        const size_t arrow = line.find('>');
        const Bytes read = hexBytes(line.substr(0, arrow - (arrow == line.npos ? 0 : 1)));
        const Bytes written = arrow == line.npos ? read : hexBytes(line.substr(arrow + 1));
        file.body = joined(std::move(*file.body), read);
        saved = joined(std::move(saved), line.find("=>") == line.npos ? read : written);
        compiled = joined(std::move(compiled), written);
    }
    if (content.find("=>") != content.npos)
        file.resaved = saved;
    if (content.find("=>") != content.npos || content.find("~>") != content.npos)
        file.rewritten = compiled;
}

bool readSection(CaseFile& file, std::string_view keyword, const std::string& content) {
    if (keyword == "before")
        file.before = hexBytes(content);
    else if (keyword == "body")
        readBody(file, content);
    else if (keyword == "rewritten")
        file.rewritten = hexBytes(content);
    else if (keyword == "resaved")
        file.resaved = hexBytes(content);
    else if (keyword == "xml")
        file.xml = repeatedElements(withEndTags(content));
    else if (keyword == "accepts")
        file.accepts.push_back(repeatedElements(withEndTags(content)));
    else
        return false;
    return true;
}

void checkWhole(const CaseFile& file) {
    if (!file.body && !file.xml)
        throw std::runtime_error("a case needs a body or an xml section");
    if (file.fails == CaseFile::Fails::never && !file.body && !file.rewritten)
        throw std::runtime_error("xml without a body needs the bytes that it is rewritten into");
    if (!file.accepts.empty() && !file.body && !file.rewritten)
        throw std::runtime_error("accepts needs bytes to compare with");
    if (file.fails == CaseFile::Fails::read && !file.body)
        throw std::runtime_error("fails read needs a body");
    if (file.fails == CaseFile::Fails::write && !file.xml)
        throw std::runtime_error("fails write needs an xml section");
    const bool isBad = file.path.filename().string().starts_with("bad-");
    if (isBad != (file.fails != CaseFile::Fails::never))
        throw std::runtime_error("cases that fail, and no others, have names that start with bad-");
}

std::string hexRow(std::span<const uint8_t> bytes, size_t from) {
    if (from >= bytes.size())
        return "(ends)";
    return hexText(bytes.subspan(from, std::min<size_t>(16, bytes.size() - from)));
}

} // namespace

Bytes hexBytes(std::string_view text) {
    Bytes bytes;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        for (std::string word; words >> word;) {
            const size_t star = word.find('*');
            const uint32_t times = star == word.npos ? 1 : number(word.substr(star + 1), 1 << 24);
            const std::string digits = word.substr(0, star);
            Bytes group;
            for (size_t i = 0; i < digits.size(); i += 2) {
                uint8_t byte = 0;
                const char* end = digits.data() + std::min(i + 2, digits.size());
                const auto result = std::from_chars(digits.data() + i, end, byte, 16);
                if (result.ec != std::errc() || result.ptr != digits.data() + i + 2)
                    throw std::runtime_error("\"" + word + "\" is not hex bytes");
                group.push_back(byte);
            }
            for (uint32_t i = 0; i < times; ++i)
                bytes.insert(bytes.end(), group.begin(), group.end());
        }
    }
    return bytes;
}

// Whether this section begins another case: the one before it has what a case may have once.
static bool beginsAnother(const CaseFile& file, std::string_view section) {
    return (section == "xml" && file.xml) || (section == "body" && (file.body || file.xml));
}

// The cases of a text. What stands before the first body or xml holds for all of them.
static std::vector<CaseFile> parseText(const std::filesystem::path& path, const std::string& text) {
    std::vector<CaseFile> files;
    CaseFile file, header;
    file.path = path;
    const std::string folder = path.parent_path().filename().string();
    file.fullForm = folder == "full" || folder == "abc";
    std::istringstream in(text);
    size_t row = 0, sectionRow = 0;
    std::string keyword, content, line;
    auto endSection = [&] {
        if (keyword.empty())
            return;
        row = sectionRow;
        while (content.ends_with('\n'))
            content.pop_back();
        if (!readSection(file, keyword, content))
            throw std::runtime_error("unknown keyword " + keyword);
        keyword.clear();
    };
    auto endCase = [&] {
        checkWhole(file);
        files.push_back(file);
    };
    try {
        for (size_t next = 1; std::getline(in, line); ++next) {
            if (line.empty() || line.starts_with("  ")) { // an empty line counts as content
                if (keyword.empty() && !trimmed(line).empty())
                    throw std::runtime_error("text outside a section");
                content += line.substr(std::min<size_t>(2, line.size())) + "\n";
            } else if (line[0] != '#') {
                endSection();
                row = next;
                line.resize(std::min(line.size(), line.find(" #")));
                const size_t blank = std::min(line.size(), line.find(' '));
                const std::string word = line.substr(0, blank);
                if (readValue(file, word, trimmed(std::string_view(line).substr(blank))))
                    continue;
                if (beginsAnother(file, word)) {
                    endCase();
                    file = header;
                }
                if ((word == "body" || word == "xml") && file.row == 0) {
                    header = file;
                    file.row = next;
                }
                keyword = word;
                sectionRow = next;
                content.clear();
            }
        }
        endSection();
        endCase();
    } catch (const std::exception& error) {
        throw std::runtime_error(path.string() + ":" + std::to_string(row) + ": " + error.what());
    }
    return files;
}

std::vector<CaseFile> parseCases(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    std::vector<CaseFile> files;
    for (const FlagCase& flagCase : casesOfFlags(text.str())) {
        for (CaseFile& file : parseText(path, flagCase.text)) {
            file.flags = flagCase.flags;
            files.push_back(std::move(file));
        }
    }
    return files;
}

std::vector<std::filesystem::path> findCases(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    std::error_code missing;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, missing)) {
        if (entry.path().extension() == ".case")
            paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string hexText(std::span<const uint8_t> bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (uint8_t byte : bytes) {
        if (!text.empty())
            text += ' ';
        text += {digits[byte >> 4], digits[byte & 15]};
    }
    return text;
}

std::string hexDiff(std::span<const uint8_t> expected, std::span<const uint8_t> actual) {
    if (std::equal(expected.begin(), expected.end(), actual.begin(), actual.end()))
        return {};
    size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
        ++at;
    std::ostringstream text;
    text << "bytes part at offset " << at << " (lengths " << expected.size() << " and " << actual.size() << ")\n";
    for (size_t from = at / 16 * 16, rows = 0; rows < 3 && from < std::max(expected.size(), actual.size());
         from += 16, ++rows)
        text << "  " << from << "\texpected " << hexRow(expected, from) << "\n\tactual   " << hexRow(actual, from)
             << "\n";
    return text.str();
}

std::string lineDiff(const std::string& expected, const std::string& actual) {
    if (expected == actual)
        return {};
    std::istringstream a(expected), b(actual);
    std::string lineA, lineB;
    size_t row = 0;
    for (bool more = true; more && lineA == lineB; ++row) {
        const bool hasA = bool(std::getline(a, lineA)), hasB = bool(std::getline(b, lineB));
        if (!hasA)
            lineA = "(ends)";
        if (!hasB)
            lineB = "(ends)";
        more = hasA && hasB;
    }
    return "texts part in line " + std::to_string(row) + "\n  expected " + lineA + "\n  actual   " + lineB +
           "\nwhole text:\n" + actual + "\n";
}

Bytes recordOf(uint16_t code, std::span<const uint8_t> body) {
    const bool isLong = body.size() >= 63;
    const uint32_t length = static_cast<uint32_t>(body.size());
    const uint32_t word = uint32_t(code) << 6 | (isLong ? 63 : length);
    Bytes record = {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8)};
    for (uint32_t shift = 0; isLong && shift < 32; shift += 8)
        record.push_back(static_cast<uint8_t>(length >> shift));
    record.insert(record.end(), body.begin(), body.end());
    return record;
}

Bytes joined(Bytes a, std::span<const uint8_t> b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
