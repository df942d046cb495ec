// Whole movies.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "SwfTags.h"

namespace libswf {

/// The header fields of a movie.
struct SwfMovieHeader {
    bool isCompressed = false; ///< the body is zlib data ("CWS")
    uint8_t version = 0;
    float frameRate = 0;          ///< frames per second, 8.8 in the file
    SwfRect frameSize;            ///< the stage, twips
    uint16_t frameCount = 0;      ///< as read; recomputed on write
    bool fullForm = false;        ///< read, shown and written in the full form (SwfContext::fullForm)
    bool keepsFrameCount = false; ///< full form: the count is written as it stands
};

/// What a movie takes over, byte for byte, from the file that it came from.
struct SwfMovieSource {
    SwfBytes wholeFile;           ///< the inflated file, when nothing at all was changed; empty otherwise
    SwfRect frameSize;            ///< the stage that `frameSizeBytes` encode
    SwfBytes frameSizeBytes;      ///< used while the stage is still that one
    uint32_t showFrames = 0;      ///< frames that the file has
    uint16_t frameCount = 0;      ///< what its header says, used while the movie still has as many frames
    std::optional<SwfBytes> tail; ///< End and all that follows it, instead of an End
};

/// A movie compiled from XML.
class SwfMovie : public SwfStruct, public SwfMovieHeader {
public:
    SwfMovie() = default;
    /// Width and height in twips.
    SwfMovie(uint8_t version, int32_t width, int32_t height, float frameRate, bool isCompressed);

    /// The file's bytes. Level is zlib's, used when the movie is compressed. Throws code 2 for more than 4 GB. Warnings
    /// tell of values that were cut. A big movie is written on so many threads, 0 for as many as the machine has cores:
    /// the bytes are the same.
    SwfVector<uint8_t> serialise(int level, SwfWarnings* warnings = nullptr, uint32_t threads = 0);
    /// Throws SwfFileException 4098 or 4100; the old file stays as it was then.
    void save(const std::string& fileName, int level);

    SwfTags tags;
    std::optional<SwfMovieSource> source;
};

/// How a movie is read.
struct SwfLoadOptions {
    bool headerOnly = false;
    /// Read the layouts of the full form (SwfContext::fullForm).
    bool fullForm = false;
    /// Keep as bytes what the object model cannot give back: tags whose reader fails or leaves bytes over, actions of
    /// another layout, import tables (code 57).
    bool keepRaw = false;
    SwfWarnings* warnings = nullptr;
    /// With keepRaw, for a movie that is only to be shown as XML: scripts and shapes are read when they are written
    /// there, on the thread that does it, and let go of again. Until then SwfTagLater stands in their places.
    bool readLater = false;
};

/// A movie read from a file, tolerantly.
class SwfMovieSafe : public SwfStruct, public SwfMovieHeader {
public:
    /// A new movie: compressed, version 7, 12 frames per second, 550 by 400 pixels.
    SwfMovieSafe();

    /// Throws SwfFileException 4097 or 4099, SwfException 3 for a bad header or body.
    void load(const std::string& fileName, bool headerOnly);
    void load(const std::string& fileName, const SwfLoadOptions& options);
    /// Reads a movie from memory; takes the buffer over.
    void parse(std::vector<uint8_t> file, const SwfLoadOptions& options);
    SwfVector<uint8_t> serialise(int level, SwfWarnings* warnings = nullptr, uint32_t threads = 0);
    void save(const std::string& fileName, int level);

    /// The inflated file, header included; empty for a movie that was not read.
    SwfBytes body() const;
    /// Everything that a changed movie keeps of this file. `wholeFile` is left empty.
    SwfMovieSource source() const;

    SwfTagsSafe tags;

private:
    std::unique_ptr<SwfIStream> _iStream;
    uint64_t _firstTag = 0; // position of the first tag in the body
};

} // namespace libswf
