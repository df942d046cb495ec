// The errors of the SWF layer.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace libswf {

/// Codes carried by SwfException.
namespace SwfError {
constexpr uint32_t compression = 1; ///< the compression library failed
constexpr uint32_t doesNotFit = 2;  ///< a count, size or construct that this tag or version cannot hold
constexpr uint32_t badData = 3;     ///< data ends early, is corrupt, or is of an unknown kind
constexpr uint32_t openForReading = 4097;
constexpr uint32_t openForWriting = 4098;
constexpr uint32_t reading = 4099;
constexpr uint32_t writing = 4100;
} // namespace SwfError

/// A failure in the binary format. what() reads "<where>: <text> (code N)".
class SwfException : public std::exception {
public:
    SwfException(uint32_t code, std::string text);
    /// At a byte of the movie, in the body of a tag; of none when its name is empty.
    SwfException(uint32_t code, uint64_t offset, std::string tag, std::string text);

    uint32_t code() const { return _code; }
    const char* what() const noexcept override { return _what.c_str(); }
    /// The same for one who names the tag and the byte himself.
    std::string reasonInTag() const;
    /// The byte of the movie that it is about.
    std::optional<uint64_t> offset() const { return _offset; }

    /// Puts an outer place in front ("tag 3 (DefineSprite)"), as the exception passes through it.
    void addPlace(const std::string& place);
    /// The same for a tag, "tag 3 (DefineSprite)", by its position in its list.
    void addTag(uint32_t position, const std::string& name);
    /// The positions given to addTag, the outermost first.
    const std::vector<uint32_t>& tagPath() const { return _tagPath; }

private:
    void compose();
    std::string composed(const std::string& text) const;

    uint32_t _code;
    std::string _place;
    std::optional<uint64_t> _offset;
    std::string _tag; // empty when there is none
    std::string _text;
    std::string _what;
    std::vector<uint32_t> _tagPath;
};

/// A file that cannot be read or written (codes 4097 to 4100).
class SwfFileException : public SwfException {
public:
    /// `reason` is the system's, or ours where the system has none; may be empty.
    SwfFileException(uint32_t code, std::string fileName, const std::string& reason = {});
    const std::string& fileName() const { return _fileName; }
    /// What happened, without the name: "cannot be opened for writing: Read-only file system".
    const std::string& problem() const { return _problem; }

private:
    std::string _fileName, _problem;
};

} // namespace libswf
