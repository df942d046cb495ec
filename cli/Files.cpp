#include "Files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>

#ifdef __linux__
#include <fcntl.h>
#include <unistd.h>
#endif

#include "Conversion.h"
#include "ProjectFile.h"
#include "SwfException.h"
#include "SwfUtils.h"

namespace zelkc {

using libswf::SwfFileException;

namespace {

[[noreturn]] void refuseText(const std::string& name) {
    throw zelk::FileLoadException(name, "an XML text of more than 1 GiB is not loaded");
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
        throw zelk::FileLoadException(file.shownName(true), libswf::withReason("cannot be read", errno));
    if (bytes.size() > most) {
        if (file.kind == FileKind::xml)
            refuseText(file.shownName(true));
        throw zelk::FileLoadException(file.shownName(true), "it has more than 4 GB");
    }
    return bytes;
}

[[noreturn]] void failStandardOutput() {
    throw zelk::FileSaveException("standard output", libswf::withReason("cannot be written", errno));
}

void writeStandardOutput(const void* data, size_t size) {
    errno = 0;
    if (std::fwrite(data, 1, size, stdout) != size)
        failStandardOutput();
    flushStandardOutput();
}

} // namespace

void flushStandardOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        failStandardOutput();
}

std::string nameOf(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

void makeFolder(const std::string& name) {
    std::error_code failure;
    std::filesystem::create_directories(libswf::pathOf(name), failure);
    if (failure)
        throw zelk::FileSaveException(name, "the folder cannot be made: " + failure.message());
}

void flushFolder([[maybe_unused]] const std::string& name) {
#ifdef __linux__
    const int folder = open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    syncfs(folder);
    close(folder);
#endif
}

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
        throw zelk::FileLoadException(file.name, error.problem());
    }
}

} // namespace

std::vector<uint8_t> readBytes(const File& file) {
    return file.isStandard() ? readStandardInput(file, UINT32_MAX) : readNamed(file, libswf::readFile);
}

std::string readText(const File& file) {
    if (file.kind == FileKind::project)
        return file.isStandard() ? zelk::textOfProject(readBytes(file), file.shownName(true))
                                 : zelk::readProject(file.name);
    if (file.isStandard()) {
        const std::vector<uint8_t> bytes = readStandardInput(file, zelk::maxTextSize);
        return xml2swf::documentText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
    std::error_code unknown; // left to the reader, which says why
    if (std::filesystem::file_size(libswf::pathOf(file.name), unknown) > zelk::maxTextSize && !unknown)
        refuseText(file.name);
    return xml2swf::documentText(readNamed(file, libswf::readTextFile));
}

void writeBytes(const File& file, std::span<const uint8_t> bytes) {
    if (file.isStandard())
        writeStandardOutput(bytes.data(), bytes.size());
    else
        libswf::writeFile(file.name, bytes);
}

void writeText(const File& file, std::string_view text) {
    if (file.kind == FileKind::project && file.isStandard())
        writeBytes(file, zelk::projectOfText(text, file.shownName(false)));
    else if (file.kind == FileKind::project)
        zelk::writeProject(file.name, text);
    else if (file.isStandard())
        writeStandardOutput(text.data(), text.size());
    else
        libswf::writeTextFile(file.name, text);
}

} // namespace zelkc
