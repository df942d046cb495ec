// Case files: one tag in its binary and XML forms (see cases/README.md).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

struct CaseFile {
    enum class Fails { never, read, write, xml };

    std::filesystem::path path;
    size_t row = 0;     ///< of its body or xml in the file
    uint32_t flags = 0; ///< the one that this case shows
    uint16_t tag = 0;
    uint8_t version = 8;
    bool fullForm = false;
    bool keepRaw = false;
    bool padded = false;
    Bytes before;
    std::optional<Bytes> body, rewritten, resaved;
    std::optional<std::string> xml;
    std::vector<std::string> accepts;
    std::vector<std::string> warns;
    std::optional<std::string> fields; ///< that are missing when the body is cut, in their order
    std::optional<std::string> kept;   ///< why all bytes are kept where nothing may be lost
    std::optional<uint16_t> gives;
    Fails fails = Fails::never;
    std::string failure; ///< code or text

    uint16_t writtenTag() const { return gives.value_or(tag); }
    const Bytes& compiled() const { return rewritten ? *rewritten : *body; }
    const Bytes& saved() const { return resaved ? *resaved : *body; }
};

/// The cases in a file, each once for each flag that it asks for. Throws std::runtime_error "<file>:<line>: ...".
std::vector<CaseFile> parseCases(const std::filesystem::path& path);

/// Every case file under `folder`, sorted.
std::vector<std::filesystem::path> findCases(const std::filesystem::path& folder);

/// Bytes from text such as "0a 0b0c 00*20 # comment"; throws std::runtime_error.
Bytes hexBytes(std::string_view text);
std::string hexText(std::span<const uint8_t> bytes);

/// Where two runs of bytes or two texts part; empty when they are equal.
std::string hexDiff(std::span<const uint8_t> expected, std::span<const uint8_t> actual);
std::string lineDiff(const std::string& expected, const std::string& actual);

/// A tag's record, with a long header from 63 bytes on.
Bytes recordOf(uint16_t code, std::span<const uint8_t> body);
Bytes joined(Bytes a, std::span<const uint8_t> b);
