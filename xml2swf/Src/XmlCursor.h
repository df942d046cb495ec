// Steps through XML whose form is foreseen.
#pragma once

#include <bit>
#include <cstring>
#include <string_view>

#include "XmlBytes.h"

namespace xml2swf {

/// A place in a text. Each step succeeds only where the text is exactly of the form asked for; then the place moves on.
class XmlCursor {
public:
    /// An element without content, whose start tag is asked for step by step, takes no more than this.
    static constexpr ptrdiff_t longestElement = 160;

    XmlCursor(std::string_view text, size_t at)
        : _text(text.data()), _at(text.data() + at), _end(text.data() + text.size()) {}
    size_t position() const { return static_cast<size_t>(_at - _text); }

    /// Passes over blanks. False where less text is left than an element might take: the steps below do not look where
    /// the text ends.
    bool toElement() {
        _at = findFirst<NotBlank>(_at, _end);
        return _end - _at >= longestElement;
    }
    template <size_t N>
    bool take(const char (&literal)[N]) {
        if (std::memcmp(_at, literal, N - 1) != 0)
            return false;
        _at += N - 1;
        return true;
    }
    /// A number of at most 7 digits.
    bool take(int32_t& value) {
        static_assert(std::endian::native == std::endian::little);
        constexpr uint64_t each = 0x0101010101010101;
        const bool isNegative = *_at == '-';
        const char* digits = _at + isNegative;
        uint64_t word;
        std::memcpy(&word, digits, sizeof word);
        word ^= each * '0'; // digits are below 10 now; the first byte that is not has its top bit set below
        const uint64_t others = ((word + each * (0x80 - 10)) | word) & each * 0x80;
        const int bits = std::countr_zero(others) & ~7;
        if (others == 0 || bits == 0)
            return false;
        word <<= 64 - bits;                                           // the last digit on top, zeros before the first
        word = word * (10 * 256 + 1) >> 8;                            // pairs of digits
        word = (word & 0x00FF00FF00FF00FF) * (100 * 65536 + 1) >> 16; // fours
        const auto magnitude =
            static_cast<int32_t>((word & 0x0000FFFF0000FFFF) * (10000 * (uint64_t(1) << 32) + 1) >> 32);
        value = (magnitude ^ -int32_t(isNegative)) + isNegative; // no branch: signs come as they like
        _at = digits + bits / 8;
        return true;
    }
    bool take(uint16_t& value) {
        int32_t number;
        if (*_at == '-' || !take(number) || number > UINT16_MAX)
            return false;
        value = static_cast<uint16_t>(number);
        return true;
    }

private:
    const char* _text;
    const char* _at;
    const char* _end;
};

} // namespace xml2swf
