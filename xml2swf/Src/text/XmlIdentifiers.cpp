#include "XmlIdentifiers.h"

#include <charconv>
#include <chrono>
#include <cstdio>

#include "XmlCharacters.h"

namespace xml2swf {

namespace {

using std::chrono::milliseconds;

constexpr uint64_t endOfDates = 253402300800000; // the year 10000 begins

// Takes so many digits from the front of a text.
bool takeDigits(std::string_view& text, size_t count, uint32_t& value) {
    if (text.size() < count || text.find_first_not_of("0123456789") < count)
        return false;
    std::from_chars(text.data(), text.data() + count, value);
    text.remove_prefix(count);
    return true;
}

bool take(std::string_view& text, char c) {
    if (!text.starts_with(c))
        return false;
    text.remove_prefix(1);
    return true;
}

bool takeTime(std::string_view& text, milliseconds& time) {
    uint32_t hour = 0, minute = 0, second = 0, fraction = 0;
    if (!takeDigits(text, 2, hour) || !take(text, ':') || !takeDigits(text, 2, minute) || !take(text, ':') ||
        !takeDigits(text, 2, second) || (take(text, '.') && !takeDigits(text, 3, fraction)) || !take(text, 'Z'))
        return false;
    time =
        std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second) + milliseconds(fraction);
    return hour < 24 && minute < 60 && second < 60;
}

constexpr size_t uuidDashes[] = {8, 13, 18, 23};

} // namespace

std::string formatDate(uint64_t value) {
    if (value >= endOfDates)
        return std::to_string(value);
    const std::chrono::sys_time<milliseconds> time{milliseconds(value)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    char text[40];
    int length = std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                               static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                               static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                               static_cast<int>(clock.seconds().count()));
    std::string result(text, static_cast<size_t>(length));
    if (clock.subseconds().count() != 0) {
        length = std::snprintf(text, sizeof text, ".%03d", static_cast<int>(clock.subseconds().count()));
        result.append(text, static_cast<size_t>(length));
    }
    return result + "Z";
}

bool parseDate(std::string_view text, uint64_t& value) {
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, value);
    if (failure == std::errc() && stop == end)
        return true;
    uint32_t year = 0, month = 0, day = 0;
    milliseconds time(0);
    if (!takeDigits(text, 4, year) || !take(text, '-') || !takeDigits(text, 2, month) || !take(text, '-') ||
        !takeDigits(text, 2, day) || (take(text, 'T') && !takeTime(text, time)) || !text.empty())
        return false;
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(year)), std::chrono::month(month),
                                           std::chrono::day(day)};
    if (!date.ok() || year < 1970)
        return false;
    value = static_cast<uint64_t>((std::chrono::sys_days(date).time_since_epoch() + time).count());
    return true;
}

std::string formatHexBytes(std::span<const uint8_t> bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const uint8_t byte : bytes)
        text.append({digits[byte >> 4], digits[byte & 15]});
    return text;
}

bool parseHexBytes(std::string_view text, std::span<uint8_t> bytes) {
    if (text.size() != 2 * bytes.size())
        return false;
    for (size_t i = 0; i < bytes.size(); ++i) {
        const int high = hexDigit(text[2 * i]), low = hexDigit(text[2 * i + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes[i] = static_cast<uint8_t>(high << 4 | low);
    }
    return true;
}

std::string formatUuid(std::span<const uint8_t, 16> bytes) {
    std::string text = formatHexBytes(bytes);
    for (const size_t at : uuidDashes)
        text.insert(at, 1, '-');
    return text;
}

bool parseUuid(std::string_view text, std::span<uint8_t, 16> bytes) {
    std::string digits;
    for (const size_t at : uuidDashes) {
        if (text.size() <= at || text[at] != '-')
            return false;
    }
    for (const char c : text) {
        if (c != '-')
            digits += c;
    }
    return parseHexBytes(digits, bytes);
}

} // namespace xml2swf
