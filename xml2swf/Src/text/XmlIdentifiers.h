// Dates, identifiers and other short bytes as attribute text.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "XmlReadObserver.h"

namespace xml2swf {

/// "2009-03-31T14:05:09.250Z" for milliseconds since 1970-01-01 UTC; without the fraction when it is 0. A date behind
/// the year 9999 is its number.
std::string formatDate(uint64_t milliseconds);
/// Reads both; the time may be left out. False for any other text, and for a day or an hour that there is none of.
bool parseDate(std::string_view text, uint64_t& milliseconds);

inline constexpr XmlTextForm dateForm{
    "date", "1970-01-01T00:00:00Z", R"([0-9]+|[0-9]{4}-[0-9]{2}-[0-9]{2}(T[0-9]{2}:[0-9]{2}:[0-9]{2}(\.[0-9]{3})?Z)?)"};

/// Lower-case hexadecimal, two digits a byte.
std::string formatHexBytes(std::span<const uint8_t> bytes);
/// False unless there are as many digits as the bytes take.
bool parseHexBytes(std::string_view text, std::span<uint8_t> bytes);

inline constexpr XmlTextForm hexBytesForm{"bytes", "00", "([0-9a-fA-F]{2})*"};
inline constexpr XmlTextForm hashForm{"hash", "0000000000000000000000000000000000000000000000000000000000000000",
                                      "[0-9a-fA-F]{64}"};

/// "01234567-89ab-cdef-0123-456789abcdef", the bytes in their order.
std::string formatUuid(std::span<const uint8_t, 16> bytes);
bool parseUuid(std::string_view text, std::span<uint8_t, 16> bytes);
inline constexpr XmlTextForm uuidForm{"uuid", "00000000-0000-0000-0000-000000000000",
                                      "[0-9a-fA-F]{8}-([0-9a-fA-F]{4}-){3}[0-9a-fA-F]{12}"};

} // namespace xml2swf
