// Failures of the XML form. Each carries its place in the text.
#pragma once

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <rapidxml/rapidxml.hpp>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace xml2swf {

/// A place in an XML text. Rows and columns count from 1; the column is in characters (UTF-8), not bytes.
struct XmlPlace {
    size_t offset = 0; ///< byte in the text
    uint32_t row = 0;
    uint32_t column = 0;

    /// LF, CR LF and a lone CR each end a line.
    void locate(std::string_view text);
};

/// Finds many places in one text. The first call goes through the whole text; each costs a short walk only.
class XmlPlaces {
public:
    explicit XmlPlaces(std::string_view text = {}) : _text(text) {}
    XmlPlace at(size_t offset);

private:
    std::string_view _text;
    std::vector<XmlPlace> _stops; // one every few thousand bytes
};

/// The text is not well-formed. what() is the parser's description.
class XmlSyntaxError : public rapidxml::parse_error {
public:
    XmlSyntaxError(const char* description, size_t offset) : parse_error(description, nullptr) {
        place.offset = offset;
    }
    XmlPlace place;
};

/// An attribute whose text is not of its field's form, or out of its range, or an element's text (no attribute) that no
/// field can hold.
class XmlValueError : public boost::bad_lexical_cast {
public:
    XmlValueError(std::string_view element, std::string_view attribute, std::string reason, size_t offset);
    /// An element that cannot stand where it does, or not as it is.
    XmlValueError(std::string_view element, std::string reason, size_t offset);
    /// "DefineShape: attribute ShapeId: "abc" is not a value that fits (ShapeId: 0 to 65535)".
    std::string description() const;

    std::string element, attribute;
    std::string reason;     ///< `"abc" is not a value that fits (ShapeId: 0 to 65535)`
    bool isElement = false; ///< neither an attribute nor the text is wrong
    XmlPlace place;
};

/// Base64 text that cannot be decoded. what() is "Incorrect Base64 data".
class Base64Error : public std::runtime_error {
public:
    explicit Base64Error(size_t offset = 0) : std::runtime_error("Incorrect Base64 data") { place.offset = offset; }
    XmlPlace place;
};

/// A bad attribute of the root. what() is "Incorrect value of attribute Width" and the like.
class MovieAttributeError : public std::runtime_error {
public:
    MovieAttributeError(std::string_view attribute, std::string fitting, size_t offset);
    std::string attribute;
    std::string fitting; ///< "Width: 0 to 53687091"
    XmlPlace place;
};

} // namespace xml2swf
