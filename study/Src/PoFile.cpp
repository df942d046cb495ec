// PO files of gettext: each text is an entry whose context is its key.
#include <array>
#include <cstdio>

#include "TextFormats.h"

namespace zelk {

namespace {

constexpr std::pair<char, char> escapes[] = {{'n', '\n'}, {'t', '\t'}, {'"', '"'},  {'\\', '\\'}, {'r', '\r'},
                                             {'a', '\a'}, {'b', '\b'}, {'f', '\f'}, {'v', '\v'}};
constexpr size_t escapesWritten = 5; // the others come as numbers

void appendEscaped(std::string& out, char c) {
    for (size_t i = 0; i < escapesWritten; ++i) {
        if (escapes[i].second == c) {
            out += '\\';
            out += escapes[i].first;
            return;
        }
    }
    if (static_cast<uint8_t>(c) >= 0x20 && c != 0x7F) {
        out += c;
        return;
    }
    std::array<char, 8> octal{};
    std::snprintf(octal.data(), octal.size(), "\\%03o", static_cast<unsigned>(static_cast<uint8_t>(c)));
    out += octal.data();
}

// A line of the file for each line of the text.
void appendString(std::string& out, const char* keyword, std::string_view text) {
    out.append(keyword) += " \"";
    const size_t lineEnd = text.find('\n');
    if (lineEnd != text.npos && lineEnd + 1 < text.size())
        out += "\"\n\"";
    for (size_t i = 0; i < text.size(); ++i) {
        appendEscaped(out, text[i]);
        if (text[i] == '\n' && i + 1 < text.size())
            out += "\"\n\"";
    }
    out += "\"\n";
}

// One line, whatever a movie holds.
void appendComment(std::string& out, const char* mark, std::string_view text) {
    if (text.empty())
        return;
    out.append(mark) += ' ';
    for (const char c : text)
        out += static_cast<uint8_t>(c) < 0x20 ? ' ' : c;
    out += '\n';
}

class PoReader {
public:
    explicit PoReader(std::string_view content) : _content(content) {}
    std::vector<NewText> run();

private:
    enum class Field : uint8_t { none, context, id, translation };
    struct Entry {
        std::string context, id, translation;
        bool hasContext = false, isFuzzy = false;
    };

    void readLine(std::string_view line);
    void startField(Field field);
    void appendQuoted(std::string_view text);
    char readEscape(std::string_view text, size_t& at) const;
    void finishEntry();
    [[noreturn]] void fail(const std::string& what) const { throw TextFileError(what, _line); }

    std::string_view _content;
    size_t _line = 0;
    Field _field = Field::none;
    Entry _entry;
    std::vector<NewText> _changes;
};

std::vector<NewText> PoReader::run() {
    while (!_content.empty()) {
        const size_t end = std::min(_content.find('\n'), _content.size());
        ++_line;
        std::string_view line = _content.substr(0, end);
        _content.remove_prefix(std::min(end + 1, _content.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        readLine(line);
    }
    finishEntry();
    return std::move(_changes);
}

void PoReader::readLine(std::string_view line) {
    const size_t start = line.find_first_not_of(" \t");
    if (start == line.npos)
        return;
    line.remove_prefix(start);
    if (line[0] == '#') {
        if (_field == Field::translation)
            finishEntry();
        if (line.starts_with("#,") && line.find("fuzzy") != line.npos)
            _entry.isFuzzy = true;
        return;
    }
    constexpr std::pair<std::string_view, Field> keywords[] = {
        {"msgctxt", Field::context}, {"msgid", Field::id}, {"msgstr", Field::translation}};
    for (const auto& [keyword, field] : keywords) {
        if (!line.starts_with(keyword) || line.substr(keyword.size()).find_first_not_of(" \t\"") == 0)
            continue;
        startField(field);
        line.remove_prefix(std::min(line.find_first_not_of(" \t", keyword.size()), line.size()));
        break;
    }
    if (line.empty() || line[0] != '"' || _field == Field::none)
        fail("this is no line of a PO file, or one of a kind that is not used here: plural forms");
    appendQuoted(line);
}

void PoReader::startField(Field field) {
    if (_field == Field::translation)
        finishEntry();
    if (field <= _field)
        fail("msgctxt, msgid and msgstr have to come in this order");
    _field = field;
    _entry.hasContext |= field == Field::context;
}

void PoReader::appendQuoted(std::string_view text) {
    std::string& value = _field == Field::context ? _entry.context
                         : _field == Field::id    ? _entry.id
                                                  : _entry.translation;
    size_t at = 1;
    for (; at < text.size() && text[at] != '"'; ++at)
        value += text[at] == '\\' ? readEscape(text, at) : text[at];
    if (at >= text.size())
        fail("a quotation mark is missing at the end");
    if (text.find_first_not_of(" \t", at + 1) != text.npos)
        fail("there is something behind the quotation mark");
}

// `at` is left at the last character of the escape.
char PoReader::readEscape(std::string_view text, size_t& at) const {
    const auto digits = [&](std::string_view known, size_t most, int base) {
        int value = 0;
        for (size_t i = 0; i < most && at + 1 < text.size(); ++i) {
            const size_t digit = known.find(text[at + 1]);
            if (digit == known.npos)
                break;
            value = value * base + static_cast<int>(digit < 16 ? digit : digit - 6);
            ++at;
        }
        return static_cast<char>(value);
    };
    const char c = ++at < text.size() ? text[at] : '\0';
    for (const auto& [letter, character] : escapes) {
        if (letter == c)
            return character;
    }
    if (c == 'x')
        return digits("0123456789abcdefABCDEF", 2, 16);
    if (c < '0' || c > '7')
        fail("an escape that means nothing");
    --at;
    return digits("01234567", 3, 8);
}

void PoReader::finishEntry() {
    if (_field != Field::none && _field != Field::translation)
        fail("msgstr is missing");
    if (_entry.hasContext && !_entry.isFuzzy && !_entry.translation.empty())
        _changes.push_back({_entry.context, _entry.id, _entry.translation});
    _entry = Entry();
    _field = Field::none;
}

} // namespace

std::string writePo(const std::vector<MovieText>& texts, std::string_view movieName) {
    std::string out;
    appendComment(out, "#", "Texts of " + std::string(movieName));
    out += "msgid \"\"\n"
           "msgstr \"\"\n"
           "\"Project-Id-Version: \\n\"\n"
           "\"PO-Revision-Date: \\n\"\n"
           "\"Last-Translator: \\n\"\n"
           "\"Language-Team: \\n\"\n"
           "\"Language: und\\n\"\n"
           "\"MIME-Version: 1.0\\n\"\n"
           "\"Content-Type: text/plain; charset=UTF-8\\n\"\n"
           "\"Content-Transfer-Encoding: 8bit\\n\"\n";
    for (const MovieText& text : texts) {
        out += '\n';
        appendComment(out, "#.", std::string(kindText(text.kind)) + ": " + tagContext(text));
        appendComment(out, "#.", text.place);
        appendComment(out, "#.", limitText(text));
        appendString(out, "msgctxt", text.key);
        appendString(out, "msgid", text.text);
        appendString(out, "msgstr", "");
    }
    return out;
}

std::vector<NewText> readPo(std::string_view content) { return PoReader(content).run(); }

} // namespace zelk
