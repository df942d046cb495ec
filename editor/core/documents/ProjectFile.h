// Project files (.zelk): a zip archive with the movie's XML text.
//
// Written: one deflated entry "data.xml". Read: the first entry that holds bytes, whatever its name; empty ones are
// passed over. A damaged, encrypted or cut entry ends the search. Builds without minizip refuse project files with
// these failures.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

// File names are UTF-8. Texts are what an XML file would hold, 1 to maxTextSize bytes; of an archive they come out as
// UTF-8 or as they were stored (xml2swf::documentText).

/// The text of a project file. It is extracted into a ScratchFolder, which stays when loading fails. Throws
/// FileLoadException.
std::string readProject(const std::string& fileName);
/// Throws FileSaveException; a file that was there is then as it was. An empty text can be saved, but not loaded again.
void writeProject(const std::string& fileName, std::string_view text);

/// The same on archives in memory, without a ScratchFolder; `name` is for the failures only.
std::string textOfProject(std::span<const uint8_t> archive, const std::string& name);
std::vector<uint8_t> projectOfText(std::string_view text, const std::string& name);

} // namespace zelk
