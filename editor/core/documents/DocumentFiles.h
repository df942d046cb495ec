// The way of a document's text from and to files.
#pragma once

#include "Document.h"
#include "Job.h"

namespace zelk {

struct LoadParams : ThreadParams {
    std::string fileName;  ///< in
    bool fullForm = false; ///< in: the form in which a movie is shown; a text has one of its own
    Document document;     ///< out
};

/// [worker thread] Reads a file by its kind. Texts are not parsed, so that a broken one opens and can be repaired.
/// Throws FileLoadException.
void loadDocument(LoadParams& params);

/// [worker thread] What a text keeps of the movie that it came from, learned anew from that movie's inflated file.
/// `isCompressed` and `fullForm` are what they were when the text was made. Throws SwfException, JobCancelled.
std::shared_ptr<const xml2swf::OriginalMovie> originalMovie(std::vector<uint8_t> file, bool isCompressed, bool fullForm,
                                                            JobProgress& progress);

struct CompileParams : ThreadParams {
    std::string text;                                       ///< in
    std::shared_ptr<const xml2swf::OriginalMovie> original; ///< in, may be null
    ConversionWarnings warnings;                            ///< out
    bool keepsOriginal = false;                             ///< out: untouched tags have the original's bytes
    /// Out: tells of the first element that became no tag, as NotMovieException. Null when all did.
    std::exception_ptr leftOut;
};

struct ChangeFormParams : CompileParams {
    bool fullForm = false; ///< in: the form that is asked for
};

/// [worker thread] Compiles the text and shows the movie in another form: `text`, `original` and `warnings` become
/// those of that form. Comments and formatting of the text go. Throws like compileDocument, and SwfException for a
/// movie that has no text.
void changeForm(ChangeFormParams& params);

struct SaveParams : CompileParams {
    std::string fileName;              ///< in
    std::optional<FileStamp> expected; ///< in: only this version is replaced; none: any
    bool keepsBackup = true;           ///< in: of what is replaced (Backup.h)
    std::vector<FileStamp> known;      ///< in: versions that need none
    FileStamp written;                 ///< out
};

/// [worker thread] Writes by the kind of the file name; what is replaced gets a backup if it shall. What stood there
/// stays when anything fails. Throws FileSaveException, FileChangedException, and for a movie what compileDocument
/// does.
void saveDocument(SaveParams& params);

/// [worker thread] The movie file's bytes. Throws XmlException, NotMovieException for a text without a Movie element,
/// TagException and the errors of xmlToSwf but SwfException.
libswf::SwfVector<uint8_t> compileDocument(CompileParams& params);

} // namespace zelk
