// Looks for what a user typed, in any case, in the start tags of many elements.
#pragma once

#include <QString>

#include <array>
#include <string>
#include <string_view>

namespace zelk {

class ByteSearch {
public:
    /// The characters that XML writes as references are looked for as these.
    explicit ByteSearch(const QString& text);

    bool isIn(std::string_view bytes) const;

private:
    bool isAt(const char* bytes) const;

    QString _text;
    std::string _lower; // UTF-8
    bool _isAscii = true;
    std::array<char, 256> _fold{};
};

} // namespace zelk
