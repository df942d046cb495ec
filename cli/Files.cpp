#include "Files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "Conversion.h"
#include "SwfException.h"
#include "SwfUtils.h"

namespace zelkc {

using libswf::SwfFileException;

namespace {

constexpr std::string_view kindNames[] = {"swf", "xml"};

[[noreturn]] void refuseText(const std::string& name) {
    throw OpenError(name, "an XML text of more than 1 GiB is not loaded");
}

std::vector<uint8_t> readStandardInput(const File& file, uint64_t most) {
    constexpr size_t chunk = size_t(1) << 16;
    std::vector<uint8_t> bytes;
    for (size_t got = chunk; got == chunk && bytes.size() <= most;) {
        const size_t size = bytes.size();
        bytes.resize(size + chunk);
        got = std::fread(bytes.data() + size, 1, chunk, stdin);
        bytes.resize(size + got);
    }
    if (std::ferror(stdin) != 0)
        throw OpenError(file.shownName(true), "it cannot be read");
    if (bytes.size() > most) {
        if (file.kind == Kind::xml)
            refuseText(file.shownName(true));
        throw OpenError(file.shownName(true), "it has more than 4 GB");
    }
    return bytes;
}

void writeStandardOutput(const File& file, const void* data, size_t size) {
    if (std::fwrite(data, 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw SwfFileException(libswf::SwfError::writing, file.shownName(false));
}

} // namespace

std::optional<Kind> kindNamed(std::string_view name) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    for (size_t i = 0; i < std::size(kindNames); ++i) {
        if (std::ranges::equal(name, kindNames[i], {}, lower))
            return static_cast<Kind>(i);
    }
    return std::nullopt;
}

std::optional<Kind> kindOfFile(std::string_view fileName) {
    const size_t dot = fileName.rfind('.');
    return dot == fileName.npos ? std::nullopt : kindNamed(fileName.substr(dot + 1));
}

std::string_view nameOf(Kind kind) { return kindNames[static_cast<size_t>(kind)]; }

std::string File::shownName(bool asInput) const {
    if (!isStandard())
        return name;
    return asInput ? "standard input" : "standard output";
}

namespace {

// Runs one of the library's readers; a file that cannot be opened is the input's fault.
template <class Read>
auto readNamed(const File& file, Read read) {
    try {
        return read(file.name);
    } catch (const SwfFileException& error) {
        throw OpenError(file.name, error.what());
    }
}

} // namespace

std::vector<uint8_t> readBytes(const File& file) {
    return file.isStandard() ? readStandardInput(file, UINT32_MAX) : readNamed(file, libswf::readFile);
}

std::string readText(const File& file) {
    if (file.isStandard()) {
        const std::vector<uint8_t> bytes = readStandardInput(file, maxTextSize);
        return xml2swf::documentText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
    std::error_code unknown; // left to the reader, which says why
    if (std::filesystem::file_size(libswf::pathOf(file.name), unknown) > maxTextSize && !unknown)
        refuseText(file.name);
    return xml2swf::documentText(readNamed(file, libswf::readTextFile));
}

void writeBytes(const File& file, std::span<const uint8_t> bytes) {
    if (file.isStandard())
        writeStandardOutput(file, bytes.data(), bytes.size());
    else
        libswf::writeFile(file.name, bytes);
}

void writeText(const File& file, std::string_view text) {
    if (file.isStandard())
        writeStandardOutput(file, text.data(), text.size());
    else
        libswf::writeTextFile(file.name, text);
}

} // namespace zelkc
