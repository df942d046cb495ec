#include "ProjectArchive.h"

#include "Exceptions.h"
#include "FileKind.h"
#include "SwfUtils.h"

#ifdef ZELK_HAVE_MINIZIP

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <new>
#include <ostream>

namespace zelk {

namespace {

// What both directions share: the position in a file that is memory. minizip is C, so nothing may throw through it.
struct MemoryFile {
    uint64_t position = 0;
    virtual uint64_t size() const = 0;
    virtual uLong read(void*, uLong) { return 0; }
    virtual uLong write(const void*, uLong) { return 0; }

    zlib_filefunc64_def functions();

protected:
    ~MemoryFile() = default;
};

MemoryFile& fileOf(voidpf stream) { return *static_cast<MemoryFile*>(stream); }

// Offsets come from the archive: none leads outside.
long seek(MemoryFile& file, uint64_t offset, int origin) {
    const uint64_t size = file.size();
    const uint64_t base = origin == ZLIB_FILEFUNC_SEEK_SET   ? 0
                          : origin == ZLIB_FILEFUNC_SEEK_CUR ? file.position
                                                             : size;
    if (offset > size - base)
        return -1;
    file.position = base + offset;
    return 0;
}

zlib_filefunc64_def MemoryFile::functions() {
    zlib_filefunc64_def result{};
    result.opaque = this;
    result.zopen64_file = [](voidpf opaque, const void*, int) { return opaque; };
    result.zread_file = [](voidpf, voidpf stream, void* to, uLong size) { return fileOf(stream).read(to, size); };
    result.zwrite_file = [](voidpf, voidpf stream, const void* from, uLong size) {
        return fileOf(stream).write(from, size);
    };
    result.ztell64_file = [](voidpf, voidpf stream) -> ZPOS64_T { return fileOf(stream).position; };
    result.zseek64_file = [](voidpf, voidpf stream, ZPOS64_T offset, int origin) {
        return seek(fileOf(stream), offset, origin);
    };
    result.zclose_file = [](voidpf, voidpf) { return 0; };
    result.zerror_file = [](voidpf, voidpf) { return 0; };
    return result;
}

struct InputFile final : MemoryFile {
    explicit InputFile(std::span<const uint8_t> bytes) : bytes(bytes) {}
    uint64_t size() const override { return bytes.size(); }
    uLong read(void* to, uLong size) override {
        const size_t got = std::min<uint64_t>(size, bytes.size() - position);
        if (got != 0)
            std::memcpy(to, bytes.data() + position, got);
        position += got;
        return static_cast<uLong>(got);
    }
    std::span<const uint8_t> bytes;
};

struct OutputFile final : MemoryFile {
    uint64_t size() const override { return bytes.size(); }
    uLong write(const void* from, uLong size) override {
        try {
            bytes.resize(std::max<uint64_t>(bytes.size(), position + size));
        } catch (const std::exception&) {
            return 0; // as a full disk would
        }
        if (size != 0)
            std::memcpy(bytes.data() + position, from, size);
        position += size;
        return size;
    }
    std::vector<uint8_t> bytes;
};

using Chunk = std::array<char, 65535>;

tm_zip localTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    const auto of = [](int value) { return static_cast<uInt>(value); };
    constexpr int firstYear = 1980; // that an archive can state
    return {of(local.tm_sec),  of(local.tm_min), of(local.tm_hour),
            of(local.tm_mday), of(local.tm_mon), of(std::max(local.tm_year + 1900, firstYear))};
}

} // namespace

struct ArchiveReader::State {
    explicit State(std::span<const uint8_t> bytes) : file(bytes) {
        zlib_filefunc64_def functions = file.functions();
        zip = unzOpen2_64("", &functions);
    }
    ~State() {
        if (zip != nullptr)
            unzClose(zip);
    }
    InputFile file;
    unzFile zip;
};

ArchiveReader::ArchiveReader(std::span<const uint8_t> bytes, std::string name)
    : _name(std::move(name)), _state(std::make_unique<State>(bytes)) {
    if (_state->zip == nullptr)
        refuse("it is no zip archive, or one without entries"); // the library does not tell them apart
    const int found = unzGoToFirstFile(_state->zip);
    unz_global_info64 info{};
    unzGetGlobalInfo64(_state->zip, &info);
    if (info.number_entry == 0)
        refuse("the archive holds no text");
    if (found != UNZ_OK)
        refuseEntry("is damaged");
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::refuse(const std::string& reason) const { throw FileLoadException(_name, reason); }

void ArchiveReader::refuseEntry(const char* reason) const {
    refuse("entry " + std::to_string(_index) + " of the archive " + reason);
}

void ArchiveReader::next() {
    const int result = unzGoToNextFile(_state->zip);
    if (result == UNZ_END_OF_LIST_OF_FILE)
        refuse("the archive holds no text");
    ++_index;
    if (result != UNZ_OK)
        refuseEntry("is damaged");
}

void ArchiveReader::findText() {
    constexpr uLong encrypted = 1;
    for (;; next()) {
        unz_file_info64 info{};
        if (unzGetCurrentFileInfo64(_state->zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
            refuseEntry("is damaged");
        if ((info.flag & encrypted) != 0)
            refuseEntry("is encrypted");
        // More bytes than stated never come out, so this bounds what is extracted.
        if (info.uncompressed_size > maxTextSize)
            refuse("an XML text of more than 1 GiB is not loaded");
        if (unzOpenCurrentFile(_state->zip) != UNZ_OK)
            refuseEntry("is damaged");
        if (info.uncompressed_size != 0)
            return;
        if (unzCloseCurrentFile(_state->zip) != UNZ_OK)
            refuseEntry("is damaged");
    }
}

void ArchiveReader::extract(std::ostream& to) {
    const auto chunk = std::make_unique<Chunk>();
    int got = 0;
    errno = 0;
    while ((got = unzReadCurrentFile(_state->zip, chunk->data(), chunk->size())) > 0) {
        if (!to.write(chunk->data(), got))
            refuse(libswf::withReason("the text cannot be extracted", errno));
    }
    const bool isWhole = unzeof(_state->zip) == 1; // the checksum of a shorter one is not looked at
    if (unzCloseCurrentFile(_state->zip) != UNZ_OK || got < 0 || !isWhole)
        refuseEntry("is damaged");
}

std::vector<uint8_t> archiveOf(const char* entry, std::string_view content, const std::string& name) {
    OutputFile file;
    zlib_filefunc64_def functions = file.functions();
    const zipFile zip = zipOpen2_64("", APPEND_STATUS_CREATE, nullptr, &functions);
    bool done = zip != nullptr;
    if (done) {
        zip_fileinfo info{};
        info.tmz_date = localTime();
        constexpr int level = 9;
        done = zipOpenNewFileInZip(zip, entry, &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, level) == ZIP_OK;
        while (done && !content.empty()) {
            const std::string_view piece = content.substr(0, std::tuple_size_v<Chunk>);
            done = zipWriteInFileInZip(zip, piece.data(), static_cast<unsigned>(piece.size())) == ZIP_OK;
            content.remove_prefix(piece.size());
        }
        // All of these have to be called, even when one before has failed.
        done = zipCloseFileInZip(zip) == ZIP_OK && done;
        done = zipClose(zip, nullptr) == ZIP_OK && done;
    }
    if (!done)
        throw FileSaveException(name, "the archive cannot be made");
    return std::move(file.bytes);
}

} // namespace zelk

#else

namespace zelk {

struct ArchiveReader::State {};

ArchiveReader::ArchiveReader(std::span<const uint8_t>, std::string name) : _name(std::move(name)) {
    refuse("this build reads no project files (\".zelk\")");
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::refuse(const std::string& reason) const { throw FileLoadException(_name, reason); }

void ArchiveReader::findText() {}

void ArchiveReader::extract(std::ostream&) {}

std::vector<uint8_t> archiveOf(const char*, std::string_view, const std::string& name) {
    throw FileSaveException(name, "this build writes no project files (\".zelk\")");
}

} // namespace zelk

#endif
