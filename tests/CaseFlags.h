// Cases that show a flag field bit by bit.
#pragma once

#include <string>
#include <vector>

/// A case text with places in braces stands for several cases: one in which no flag is set, and one for each bit that
/// such a place asks for.
///   {10}        true or false: whether the bit 0x10 is set
///   {#30}       the bits 0x30, as a number
///   {10?text}   the text where the bit is set; {!10?text} where it is not
///   {@}, {@1}   the field's first byte, its second one, and so on, in hex; {@+80} with the bit 0x80, {@-c} without
///   0x0c
struct FlagCase {
    uint32_t flags;
    std::string text;
};
std::vector<FlagCase> casesOfFlags(const std::string& text);
