#include "SwfException.h"

#include <cstdio>

#include "SwfVector.h"

namespace libswf {

void assertionFailed(const char* expression) { throw SwfAssertionFailure(expression); }

SwfException::SwfException(uint32_t code, std::string text) : _code(code), _text(std::move(text)) { compose(); }

SwfException::SwfException(uint32_t code, uint64_t offset, std::string tag, std::string text)
    : _code(code), _offset(offset), _tag(std::move(tag)), _text(std::move(text)) {
    compose();
}

void SwfException::addPlace(const std::string& place) {
    _place = _place.empty() ? place : place + " > " + _place;
    compose();
}

void SwfException::addTag(uint32_t position, const std::string& name) {
    addPlace("tag " + std::to_string(position) + " (" + name + ")");
    _tagPath.insert(_tagPath.begin(), position);
}

void SwfException::compose() {
    const std::string inTag = _tag.empty() ? _text : _tag + " > " + _text;
    if (!_offset) {
        _what = composed(inTag);
        return;
    }
    char place[32];
    std::snprintf(place, sizeof place, "offset 0x%llx: ", static_cast<unsigned long long>(*_offset));
    _what = composed(place + inTag);
}

std::string SwfException::composed(const std::string& text) const {
    return (_place.empty() ? text : _place + ": " + text) + " (code " + std::to_string(_code) + ")";
}

std::string SwfException::reasonInTag() const { return composed(_text); }

static const char* fileProblem(uint32_t code) {
    switch (code) {
    case SwfError::openForReading: return "cannot be opened for reading";
    case SwfError::openForWriting: return "cannot be opened for writing";
    case SwfError::reading: return "cannot be read";
    default: return "cannot be written";
    }
}

static std::string fileProblem(uint32_t code, const std::string& reason) {
    return reason.empty() ? fileProblem(code) : fileProblem(code) + (": " + reason);
}

SwfFileException::SwfFileException(uint32_t code, std::string fileName, const std::string& reason)
    : SwfException(code, fileName + ": " + fileProblem(code, reason)), _fileName(std::move(fileName)),
      _problem(fileProblem(code, reason)) {}

} // namespace libswf
