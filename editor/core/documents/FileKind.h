// The kinds of file that a document is read from and written to.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zelk {

enum class FileKind : uint8_t {
    xml = 0,    ///< the movie's XML text
    swf = 1,    ///< a movie
    project = 2 ///< a zip archive (.zelk) that carries the XML text
};

constexpr uint64_t maxTextSize = uint64_t(1) << 30; ///< of an XML text that is loaded, in bytes

/// What the extension says, in any letter case: "zelk", "swf" or "xml" behind the last dot; none for anything else.
std::optional<FileKind> fileKind(std::string_view fileName);
/// The same for an extension alone, without its dot.
std::optional<FileKind> kindOfExtension(std::string_view extension);

/// What the first bytes of a file say, of which kindBytes are enough; none when they say nothing.
std::optional<FileKind> kindOfContent(std::string_view start);
constexpr size_t kindBytes = 64;

/// The extension without its dot.
std::string_view extensionOf(FileKind kind);

} // namespace zelk
