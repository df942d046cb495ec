#include "SwfException.h"

#include "SwfVector.h"

namespace libswf {

void assertionFailed(const char* expression) { throw SwfAssertionFailure(expression); }

SwfException::SwfException(uint32_t code, std::string text) : _code(code), _text(std::move(text)) { compose(); }

void SwfException::addPlace(const std::string& place) {
    _place = _place.empty() ? place : place + " > " + _place;
    compose();
}

void SwfException::addTag(uint32_t position, const std::string& name) {
    addPlace("tag " + std::to_string(position) + " (" + name + ")");
    _tagPath.insert(_tagPath.begin(), position);
}

void SwfException::compose() {
    _what = (_place.empty() ? _text : _place + ": " + _text) + " (code " + std::to_string(_code) + ")";
}

static const char* fileProblem(uint32_t code) {
    switch (code) {
    case SwfError::openForReading: return "cannot be opened for reading";
    case SwfError::openForWriting: return "cannot be opened for writing";
    case SwfError::reading: return "cannot be read";
    default: return "cannot be written";
    }
}

SwfFileException::SwfFileException(uint32_t code, std::string fileName)
    : SwfException(code, fileName + ": " + fileProblem(code)), _fileName(std::move(fileName)) {}

} // namespace libswf
