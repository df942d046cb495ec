// Whole files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace libswf {

/// File names are UTF-8 everywhere, whatever the system's code page.
std::filesystem::path pathOf(const std::string& fileName);

/// Throws SwfFileException 4097 when the file cannot be opened, 4099 when it cannot be read (folders and files of more
/// than 4 GB included).
std::vector<uint8_t> readFile(const std::string& fileName);
std::string readTextFile(const std::string& fileName);

/// Writes beside the target and renames, so that a failure leaves an existing file as it was. Asserts that data and
/// size are not zero. Throws SwfFileException 4098 or 4100.
void writeFile(const std::string& fileName, std::span<const uint8_t> bytes);
/// The same for text, which may be empty.
void writeTextFile(const std::string& fileName, std::string_view text);

/// `what` with the system's words for an error number (errno) behind it: "cannot be written: No space left on device".
/// Only `what` for 0.
std::string withReason(std::string what, int error);

/// Asks the system to back a big block of fresh memory with big pages, so that filling it takes fewer page faults. Only
/// advice: of a small block, or where there is none, it does nothing.
void adviseBigPages(const void* block, size_t bytes);

} // namespace libswf
