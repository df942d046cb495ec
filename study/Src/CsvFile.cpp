// CSV as spreadsheets read it: fields in quotation marks, lines that end with \r\n, and a line of names first.
#include <algorithm>

#include "SwfTagCodes.h"
#include "TextFormats.h"

namespace zelk {

namespace {

constexpr std::string_view keyColumn = "key", textColumn = "text", translationColumn = "translation";

using Row = std::vector<std::string>;

void appendRow(std::string& out, const Row& row) {
    for (size_t i = 0; i < row.size(); ++i) {
        out.append(i == 0 ? "\"" : ",\"");
        for (const char c : row[i])
            out.append(c == '"' ? 2 : 1, c);
        out += '"';
    }
    out += "\r\n";
}

std::string number(const auto& value) { return value ? std::to_string(*value) : std::string(); }

class CsvReader {
public:
    explicit CsvReader(std::string_view content) : _content(content) {}

    /// False at the end.
    bool next(Row& row) {
        row.clear();
        line = _nextLine;
        if (_at == _content.size())
            return false;
        do {
            row.push_back(field());
        } while (_at < _content.size() && _content[_at] == ',' && ++_at != 0);
        if (_at < _content.size() && _content[_at] == '\r')
            ++_at;
        if (_at < _content.size() && _content[_at] != '\n')
            throw TextFileError("there is something behind a quotation mark", line);
        _nextLine += _at < _content.size() ? 1 : 0;
        _at = std::min(_at + 1, _content.size());
        return true;
    }

    size_t line = 1; ///< of the row, from 1

private:
    std::string field() {
        if (_at == _content.size() || _content[_at] != '"') {
            const size_t end = std::min(_content.find_first_of(",\r\n", _at), _content.size());
            const size_t start = std::exchange(_at, end);
            return std::string(_content.substr(start, end - start));
        }
        std::string value;
        for (++_at; _at < _content.size(); ++_at) {
            if (_content[_at] == '"' && (++_at == _content.size() || _content[_at] != '"'))
                return value;
            value += _content[_at];
            _nextLine += _content[_at] == '\n' ? 1 : 0;
        }
        throw TextFileError("a quotation mark is missing at the end", line);
    }

    std::string_view _content;
    size_t _at = 0, _nextLine = 1;
};

size_t columnOf(const Row& names, std::string_view name) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        throw TextFileError("the first line has no \"" + std::string(name) + "\"", 1);
    return static_cast<size_t>(found - names.begin());
}

} // namespace

std::string writeCsv(const std::vector<MovieText>& texts) {
    std::string out;
    appendRow(out, {std::string(keyColumn), "kind", "tag", "id", "sprite", "frame", "font", "font name", "place",
                    "limit", std::string(textColumn), std::string(translationColumn)});
    for (const MovieText& text : texts)
        appendRow(out, {text.key, std::string(kindText(text.kind)), libswf::tagName(text.tagCode), number(text.id),
                        number(text.sprite), std::to_string(text.frame), number(text.font), text.fontName, text.place,
                        limitText(text), text.text, ""});
    return out;
}

std::vector<NewText> readCsv(std::string_view content) {
    CsvReader reader(content);
    Row row;
    reader.next(row);
    const size_t key = columnOf(row, keyColumn), text = columnOf(row, textColumn),
                 translation = columnOf(row, translationColumn), columns = row.size();
    std::vector<NewText> changes;
    while (reader.next(row)) {
        if (row.size() == 1 && row[0].empty())
            continue; // an empty line
        if (row.size() != columns)
            throw TextFileError("this line has " + std::to_string(row.size()) + " fields, the first one has " +
                                    std::to_string(columns),
                                reader.line);
        if (!row[translation].empty())
            changes.push_back({row[key], row[text], row[translation]});
    }
    return changes;
}

} // namespace zelk
