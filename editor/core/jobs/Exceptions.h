// The editor's own failures.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace zelk {

class ZelkException : public std::exception {
public:
    explicit ZelkException(std::string description) : _description(std::move(description)) {}
    const std::string& description() const { return _description; }
    const char* what() const noexcept override { return _description.c_str(); }

private:
    std::string _description;
};

/// A file operation failed. File names are UTF-8; the description does not say them again.
class FileException : public ZelkException {
public:
    FileException(std::string fileName, std::string description)
        : ZelkException(std::move(description)), _fileName(std::move(fileName)) {}
    const std::string& fileName() const { return _fileName; }

private:
    std::string _fileName;
};

/// A file could not be read or yielded nothing to load.
class FileLoadException : public FileException {
public:
    using FileException::FileException;
};

/// A file could not be written; what stood there before still does.
class FileSaveException : public FileException {
public:
    using FileException::FileException;
};

/// The file holds something else than what it is known to hold; nothing was written.
class FileChangedException : public FileSaveException {
public:
    explicit FileChangedException(std::string fileName)
        : FileSaveException(std::move(fileName), "Another program changed the file.") {}
};

/// A text is not well-formed XML. Row and column count from 1; 0 for an unknown place.
class XmlException : public ZelkException {
public:
    XmlException(std::string description, uint32_t row, uint32_t column)
        : ZelkException(std::move(description)), row(row), column(column) {}
    const uint32_t row, column;
};

/// The same for the text of a named file.
class FileXmlException : public XmlException {
public:
    FileXmlException(std::string fileName, const XmlException& error)
        : XmlException(error), _fileName(std::move(fileName)) {}
    const std::string& fileName() const { return _fileName; }

private:
    std::string _fileName;
};

/// A text is well-formed XML, but no movie or tag: "The document has no Movie element.", "Foo is no tag.". Row and
/// column count from 1.
class NotMovieException : public ZelkException {
public:
    NotMovieException(std::string description, uint32_t row, uint32_t column)
        : ZelkException(std::move(description)), row(row), column(column) {}
    static NotMovieException noMovie() { return {"The document has no Movie element.", 1, 1}; }
    static NotMovieException noTag(std::string_view element, uint32_t row, uint32_t column) {
        return {std::string(element) + " is no tag.", row, column};
    }
    const uint32_t row, column;
};

/// There is nothing to play movies with.
class NoPlayerException : public ZelkException {
public:
    using ZelkException::ZelkException;
};

/// A tag cannot be written into a movie. Row and column of its element, from 1.
class TagException : public ZelkException {
public:
    TagException(std::string description, uint32_t row, uint32_t column)
        : ZelkException(std::move(description)), row(row), column(column) {}
    const uint32_t row, column;
};

/// A movie cannot be played.
class PlayerException : public ZelkException {
public:
    using ZelkException::ZelkException;
};

} // namespace zelk
