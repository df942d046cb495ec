#include "ProjectFile.h"

#include "Conversion.h"
#include "Exceptions.h"
#include "FileKind.h"
#include "ProjectArchive.h"
#include "ScratchFolder.h"
#include "SwfException.h"
#include "SwfUtils.h"

#include <cerrno>
#include <fstream>
#include <sstream>

namespace zelk {

namespace {

// The file name in the folder: that of the entry is never used as one.
std::string scratchNameOf(const ArchiveReader& archive) { return std::to_string(archive.index()) + ".xml"; }

// Leaves nothing of an entry that could not be extracted whole.
std::filesystem::path extractInto(ScratchFolder& folder, const std::string& fileName) {
    const std::vector<uint8_t> bytes = libswf::readFile(fileName);
    ArchiveReader archive(bytes, fileName);
    archive.findText();
    const std::filesystem::path path = folder.newFile(scratchNameOf(archive));
    try {
        std::ofstream file(path, std::ios::binary);
        errno = 0;
        archive.extract(file);
        file.close();
        if (!file)
            throw FileLoadException(fileName, libswf::withReason("the temporary folder takes no more", errno));
        return path;
    } catch (...) {
        folder.removeFiles();
        throw;
    }
}

std::string utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace

std::string readProject(const std::string& fileName) {
    try {
        ScratchFolder folder;
        const std::filesystem::path file = extractInto(folder, fileName);
        std::string text = xml2swf::documentText(libswf::readTextFile(utf8(file)));
        folder.remove();
        return text;
    } catch (const libswf::SwfFileException& error) {
        throw FileLoadException(error.fileName(), error.problem()); // It may be the extracted file that fails.
    } catch (const std::filesystem::filesystem_error& error) {
        throw FileLoadException(fileName,
                                "the temporary folder " + utf8(error.path1()) + ": " + error.code().message());
    }
}

void writeProject(const std::string& fileName, std::string_view text) {
    const std::vector<uint8_t> archive = projectOfText(text, fileName);
    try {
        libswf::writeFile(fileName, archive);
    } catch (const libswf::SwfFileException& error) {
        throw FileSaveException(fileName, error.problem());
    }
}

std::string textOfProject(std::span<const uint8_t> bytes, const std::string& name) {
    ArchiveReader archive(bytes, name);
    archive.findText();
    std::ostringstream text;
    archive.extract(text);
    return xml2swf::documentText(std::move(text).str());
}

std::vector<uint8_t> projectOfText(std::string_view text, const std::string& name) {
    if (text.size() > maxTextSize)
        throw FileSaveException(name, "an XML text of more than 1 GiB is not saved as a project");
    return archiveOf("data.xml", text, name);
}

} // namespace zelk
