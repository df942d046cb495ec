// Movies from files of every kind.
#pragma once

#include "Conversion.h"
#include "Files.h"

namespace zelkc {

struct MovieOptions {
    bool keepRaw = true; ///< keep unreadable tags as bytes instead of dropping them
    /// The form in which a movie is read and shown; by default that of the text it comes from, or the classic one.
    std::optional<bool> fullForm;
    bool abcAsData = false; ///< in the full form: show blocks of ActionScript 3 as bytes
    int level = 9;          ///< of compression, 0 to 9
    libswf::SwfWarnings* warnings = nullptr;
    std::string original; ///< the movie file that a text came from; empty for none
    uint32_t threads = 0; ///< of one conversion; 0 for as many as the machine has cores

    xml2swf::ConversionOptions conversion() const;
};

/// Compiles the text of a file. Throws zelk::FileXmlException when it is not well-formed, zelk::NotMovieException when
/// it has no Movie element, and the other errors of xmlToSwf.
void compile(const File& file, const std::string& text, libswf::SwfMovie& movie, const MovieOptions& options);

/// The first bytes of a movie file, which SwfMovieHeader does not keep.
struct Signature {
    std::string text;        ///< "FWS", "CWS", "ZWS", or whatever three bytes stand there
    uint32_t fileLength = 0; ///< of the inflated file, as the header states it
    uint64_t bytes = 0;      ///< of the file
};

/// What a movie is read from.
struct MovieFile {
    std::vector<uint8_t> bytes;
    bool fullForm = false; ///< of the text that it was compiled from
};

/// The bytes of a movie; a text is compiled. Throws as compile and readBytes do.
MovieFile readMovie(const File& file, const MovieOptions& options);

/// Reads a movie from its bytes, in the form that is asked for. Throws zelk::FileLoadException for a movie file that
/// is none. `onlyToShow` for a movie that is only turned into XML.
Signature load(const File& file, MovieFile content, libswf::SwfMovieSafe& movie, const MovieOptions& options,
               bool onlyToShow = false);

/// The same from a file; a text is compiled in its own form and read as the movie file that it gives. Throws
/// zelk::FileLoadException for a movie file that cannot be opened. `onlyToShow` for a movie that is only turned into
/// XML.
Signature load(const File& file, libswf::SwfMovieSafe& movie, const MovieOptions& options, bool onlyToShow = false);

/// Reads one file and writes the other. Nothing is written when anything fails.
void convert(const File& input, const File& output, const MovieOptions& options);

} // namespace zelkc
