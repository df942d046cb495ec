// An open movie.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "DocumentWarnings.h"
#include "FileKind.h"
#include "FileStamp.h"
#include "FormDifferences.h"
#include "OriginalMovie.h"

namespace zelk {

using xml2swf::FormDifferences;

/// Holds what a document is besides the text that is being edited: that one stands in the text view, and here only on
/// its way there (LoadFromDocCmd) and back (SaveAsDocCmd), so that a big text is not kept twice.
struct Document {
    std::string fileName; ///< full path, UTF-8; a made-up name without a folder while there is no file
    FileKind kind = FileKind::swf;
    bool hasFile = false;
    std::string text;
    bool isModified = false;
    /// What the user knows the file to hold: a save over anything else asks first. None while there is no file.
    std::optional<FileStamp> fileStamp;
    /// What the file held when the text was read from it or saved to it.
    std::optional<FileStamp> textStamp;
    /// The movie that the text came from: what is not touched is written with its bytes. Null when there is none.
    std::shared_ptr<const xml2swf::OriginalMovie> original;
    WarningList warnings;
    FormDifferences formDifferences; ///< of a movie that was opened in the classic form
};

/// Whether a save goes to the document's file: a movie that came from "a.swf.bak" must not become a text there.
bool hasFileOfItsKind(const Document& document);
/// The name to save a document under that has no such file.
std::string proposedName(const Document& document);

/// The next made-up name: "Untitled.swf" once, then "Untitled-1.swf" and so on. Never gives a name twice.
class UntitledNames {
public:
    std::string next();

private:
    uint32_t _count = 0;
};

/// A new movie under a made-up name, in the full or the classic form.
Document newDocument(UntitledNames& names, bool fullForm = false);

} // namespace zelk
