#include "CaseFlags.h"

#include <bit>
#include <cstdint>
#include <stdexcept>

namespace {

std::string hexByte(uint32_t byte) {
    static constexpr char digits[] = "0123456789abcdef";
    return {digits[byte >> 4 & 15], digits[byte & 15]};
}

struct Place {
    char kind = ' '; // '#', '@', '!' or none
    uint32_t mask = 0, added = 0, removed = 0;
    bool hasText = false;
    std::string text;
};

// Of what stands between the braces.
Place placeOf(const std::string& inner) {
    Place place;
    const size_t question = std::min(inner.find('?'), inner.size());
    size_t at = std::string("#@!").find(inner[0]) == std::string::npos ? 0 : 1;
    place.kind = at == 0 ? ' ' : inner[0];
    const std::string head = inner.substr(at, question - at);
    const size_t sign = std::min(head.find_first_of("+-"), head.size());
    place.mask = sign == 0 ? 0 : static_cast<uint32_t>(std::stoul(head.substr(0, sign), nullptr, 16));
    if (sign < head.size())
        (head[sign] == '+' ? place.added : place.removed) =
            static_cast<uint32_t>(std::stoul(head.substr(sign + 1), nullptr, 16));
    place.hasText = question < inner.size();
    place.text = place.hasText ? inner.substr(question + 1) : "";
    return place;
}

std::string filled(const Place& place, uint32_t flags) {
    const uint32_t set = flags & place.mask;
    switch (place.kind) {
    case '@': return hexByte((flags >> (8 * place.mask) & 0xFF & ~place.removed) | place.added);
    case '#': return std::to_string(set >> std::countr_zero(place.mask));
    case '!': return set == 0 ? place.text : "";
    default: return place.hasText ? (set != 0 ? place.text : "") : set != 0 ? "true" : "false";
    }
}

// Fills all places; `bits` takes those that they ask for.
std::string filled(const std::string& text, uint32_t flags, uint32_t& bits) {
    std::string result;
    size_t done = 0;
    for (size_t open; (open = text.find('{', done)) != text.npos;) {
        const size_t close = text.find('}', open);
        if (close == text.npos || close == open + 1)
            throw std::runtime_error("a place in braces is empty or has no end");
        const Place place = placeOf(text.substr(open + 1, close - open - 1));
        bits |= place.kind == '@' ? 0 : place.mask;
        result += text.substr(done, open - done) + filled(place, flags);
        done = close + 1;
    }
    return result + text.substr(done);
}

} // namespace

std::vector<FlagCase> casesOfFlags(const std::string& text) {
    if (text.find("\nbraces\n") != text.npos)
        return {{0, text}};
    uint32_t bits = 0;
    std::vector<FlagCase> cases = {{0, filled(text, 0, bits)}};
    for (; bits != 0; bits &= bits - 1) {
        const uint32_t flag = bits & -bits;
        uint32_t ignored = 0;
        cases.push_back({flag, filled(text, flag, ignored)});
    }
    return cases;
}
