#include "RecoverySession.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "Exceptions.h"
#include "SwfException.h"
#include "SwfUtils.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {

constexpr const char* lockSuffix = ".lock";
constexpr const char *textName = "text.xml", *infoName = "info";

std::string originalName(uint32_t number) { return "original-" + std::to_string(number) + ".swf"; }

std::string utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

int64_t now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

// --- the info: a name, a blank and a value on each line --------------------------------------------------------------

using Fields = std::map<std::string, std::string>;

// File names may have line breaks.
std::string escaped(const std::string& text) {
    std::string result;
    for (char c : text)
        result += c == '\\' ? "\\\\" : c == '\n' ? "\\n" : std::string(1, c);
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 1 < text.size();
        result += !isEscape ? text[i] : text[++i] == 'n' ? '\n' : text[i];
    }
    return result;
}

template <class Number>
void read(const Fields& fields, const std::string& name, Number& number) {
    if (const auto field = fields.find(name); field != fields.end())
        std::from_chars(field->second.data(), field->second.data() + field->second.size(), number);
}

// What the signature of the file said before it was inflated.
bool wasCompressed(const xml2swf::OriginalMovie& original) {
    constexpr uint8_t firstLzmaVersion = 13;
    const uint8_t signature = original.wholeFile().data()[0];
    return signature == 'C' || (signature == 'Z' && original.version() >= firstLzmaVersion);
}

std::string infoText(const KeptDocument& document, const xml2swf::OriginalMovie* original) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << "name " << escaped(document.fileName) << "\nkind " << int(document.kind) << "\nfile " << document.hasFile
         << "\ncaret " << document.caret << "\ntime " << document.time << "\nsize " << document.textSize << '\n';
    if (const auto& stamp = document.fileStamp)
        text << "fileSize " << stamp->size << "\nfileHash " << stamp->hash << "\nfileTime " << stamp->time << '\n';
    if (original != nullptr)
        text << "original " << document.original << "\ncompressed " << wasCompressed(*original) << "\nfull "
             << original->fullForm() << '\n';
    return text.str();
}

Fields fieldsOf(const fs::path& info) {
    Fields fields;
    std::ifstream file(info, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (const size_t blank = line.find(' '); blank != line.npos)
            fields[line.substr(0, blank)] = line.substr(blank + 1);
    }
    return fields;
}

bool flag(const Fields& fields, const std::string& name) {
    int value = 0;
    read(fields, name, value);
    return value != 0;
}

// --- files -----------------------------------------------------------------------------------------------------------

uint64_t sizeOf(const fs::path& folder) {
    uint64_t size = 0;
    std::error_code failure;
    for (auto entry = fs::recursive_directory_iterator(folder, failure); !failure && entry != fs::end(entry);
         entry.increment(failure)) {
        std::error_code ignored;
        if (const uintmax_t bytes = entry->file_size(ignored); !ignored)
            size += bytes;
    }
    return size;
}

bool makePrivate(const fs::path& folder) {
    std::error_code failure;
    fs::create_directories(folder, failure);
    fs::permissions(folder, fs::perms::owner_all, failure);
    return !failure;
}

// The inflated file, with the signature of one that is not compressed.
std::vector<uint8_t> inflatedFile(const xml2swf::OriginalMovie& original) {
    const auto bytes = original.wholeFile().span();
    std::vector<uint8_t> file(bytes.begin(), bytes.end());
    file[0] = 'F';
    return file;
}

} // namespace

KeptDocument KeptDocument::of(const Document& document) {
    KeptDocument kept;
    kept.fileName = document.fileName;
    kept.kind = document.kind;
    kept.hasFile = document.hasFile;
    kept.fileStamp = document.fileStamp;
    return kept;
}

RecoverySession::RecoverySession(fs::path root, std::string name, SessionLock lock)
    : _root(std::move(root)), _folder(_root / name), _lockFile(_root / (name + lockSuffix)), _lock(std::move(lock)) {}

std::unique_ptr<RecoverySession> RecoverySession::begin(const fs::path& root) {
    constexpr int mostTries = 5; // Another run may take the file for one that was left behind before it is locked.
    for (int i = 0; i < mostTries && makePrivate(root); ++i) {
        std::random_device random;
        const std::string name = std::to_string(now()) + "-" + std::to_string(random());
        // The folder follows with the first copy, so that no other run meets it without its lock.
        if (auto lock = SessionLock::take(root / (name + lockSuffix)))
            return std::unique_ptr<RecoverySession>(new RecoverySession(root, name, std::move(*lock)));
    }
    return nullptr;
}

std::vector<std::unique_ptr<RecoverySession>> RecoverySession::ended(const fs::path& root) {
    std::vector<std::unique_ptr<RecoverySession>> sessions;
    std::vector<fs::path> locks;
    std::error_code failure;
    for (auto entry = fs::directory_iterator(root, failure); !failure && entry != fs::end(entry);
         entry.increment(failure)) {
        fs::path path = entry->path();
        if (entry->is_directory(failure))
            path += lockSuffix; // which may have been lost
        if (path.extension() == lockSuffix && std::ranges::find(locks, path) == locks.end())
            locks.push_back(path);
    }
    std::ranges::sort(locks); // by the time at which they began
    for (const fs::path& path : locks) {
        auto lock = SessionLock::take(path);
        if (!lock)
            continue;
        std::unique_ptr<RecoverySession> session(new RecoverySession(root, utf8(path.stem()), std::move(*lock)));
        if (session->documents().empty())
            session->end();
        else
            sessions.push_back(std::move(session));
    }
    return sessions;
}

// --- copies ----------------------------------------------------------------------------------------------------------

void RecoverySession::checkRoom(const KeptDocument& document, uint64_t bytes) const {
    std::error_code ignored;
    const uintmax_t replaced = fs::file_size(folderOf(document.id) / textName, ignored);
    if (sizeOf(_root) - (ignored ? 0 : replaced) + bytes > mostBytes)
        throw FileSaveException(document.fileName,
                                "The recovery copies of all documents may not take more than 2 GiB.");
}

void RecoverySession::keep(const KeptDocument& document, std::string_view text,
                           const xml2swf::OriginalMovie* original) {
    const fs::path folder = folderOf(document.id);
    std::error_code ignored;
    const fs::path originalFile = folder / originalName(document.original);
    const bool writesOriginal = original != nullptr && !fs::exists(originalFile, ignored);
    checkRoom(document, text.size() + (writesOriginal ? original->wholeFile().size() : 0));
    KeptDocument kept = document;
    kept.textSize = text.size();
    kept.time = now();
    try {
        fs::create_directories(folder);
        if (writesOriginal)
            libswf::writeFile(utf8(originalFile), inflatedFile(*original));
        libswf::writeTextFile(utf8(folder / textName), text);
        libswf::writeTextFile(utf8(folder / infoName), infoText(kept, original));
        if (writesOriginal)
            fs::remove(folder / originalName(document.original - 1), ignored);
    } catch (const libswf::SwfFileException& error) {
        throw FileSaveException(document.fileName, error.problem());
    } catch (const fs::filesystem_error& error) {
        throw FileSaveException(document.fileName, error.code().message());
    }
}

void RecoverySession::forget(uint32_t id) {
    std::error_code ignored;
    fs::remove_all(folderOf(id), ignored);
}

bool RecoverySession::adopt(uint32_t id, RecoverySession& from, uint32_t fromId) {
    std::error_code failure;
    fs::create_directories(_folder, failure);
    fs::rename(from.folderOf(fromId), folderOf(id), failure);
    return !failure;
}

std::optional<KeptDocument> RecoverySession::info(const fs::path& folder) const {
    const Fields fields = fieldsOf(folder / infoName);
    KeptDocument document;
    int kind = 0;
    std::error_code failure;
    document.textSize = fs::file_size(folder / textName, failure);
    const std::string id = utf8(folder.filename());
    if (failure || std::from_chars(id.data(), id.data() + id.size(), document.id).ptr != id.data() + id.size())
        return std::nullopt;
    // Of a text whose info is not there yet only the name is lost.
    const auto name = fields.find("name");
    document.fileName = name == fields.end() ? "Untitled.xml" : unescaped(name->second);
    document.hasFile = flag(fields, "file");
    read(fields, "kind", kind);
    document.kind = kind == 1 ? FileKind::swf : kind == 2 ? FileKind::project : FileKind::xml;
    read(fields, "original", document.original);
    read(fields, "caret", document.caret);
    read(fields, "time", document.time);
    if (fields.contains("fileSize")) {
        FileStamp& stamp = document.fileStamp.emplace();
        read(fields, "fileSize", stamp.size);
        read(fields, "fileHash", stamp.hash);
        read(fields, "fileTime", stamp.time);
    }
    return document;
}

std::vector<KeptDocument> RecoverySession::documents() const {
    std::vector<KeptDocument> documents;
    std::error_code failure;
    for (auto entry = fs::directory_iterator(_folder, failure); !failure && entry != fs::end(entry);
         entry.increment(failure)) {
        if (const auto document = info(entry->path()))
            documents.push_back(*document);
    }
    std::ranges::sort(documents, {}, &KeptDocument::id);
    return documents;
}

std::string RecoverySession::text(uint32_t id) const {
    const std::string name = utf8(folderOf(id) / textName);
    try {
        return libswf::readTextFile(name);
    } catch (const libswf::SwfFileException& error) {
        throw FileLoadException(name, error.problem());
    }
}

void RecoverySession::load(uint32_t id, LoadParams& params) const {
    const fs::path folder = folderOf(id);
    const auto kept = info(folder);
    if (!kept)
        throw FileLoadException(utf8(folder), "The copy is not there.");
    Document& document = params.document;
    document.fileName = kept->fileName;
    document.kind = kept->kind;
    document.hasFile = kept->hasFile;
    document.fileStamp = kept->fileStamp;
    document.isModified = true;
    document.text = text(id);
    const Fields fields = fieldsOf(folder / infoName);
    if (kept->original == 0)
        return;
    try {
        document.original = originalMovie(libswf::readFile(utf8(folder / originalName(kept->original))),
                                          flag(fields, "compressed"), flag(fields, "full"), params.progress);
    } catch (const libswf::SwfException& error) {
        libswf::SwfWarning warning;
        warning.kind = libswf::SwfWarning::Kind::dropped;
        warning.reason = "The movie that the text came from cannot be read (" + std::string(error.what()) +
                         "): tags are compiled from their text.";
        ConversionWarnings warnings;
        warnings.items.push_back({warning});
        document.warnings.loaded(std::move(warnings));
    }
}

void RecoverySession::end() {
    std::error_code ignored;
    fs::remove_all(_folder, ignored);
    fs::remove(_lockFile, ignored); // while it is held
    _lock.reset();
    fs::remove(_lockFile, ignored); // where a file that is open stays
    fs::remove(_root, ignored);     // if no other session is there
}

} // namespace zelk
