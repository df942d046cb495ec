// Dispatch between tags and their elements.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "SwfTags.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// Room for an empty tag's element: a text that grows under many of them would stand in memory twice.
constexpr size_t textPerTag = 160;

/// Writes one tag as a child element of `parent`. With keepRaw in the context, a tag that its form cannot express is
/// written as Unknown with its bytes.
void writeTag(XmlNode& parent, libswf::SwfTag& tag);
/// Writes the tags of a list in order.
void writeTagList(XmlNode& parent, const libswf::SwfTags& tags);

/// What the full form says of a tag's record, as attributes; by the tag itself where tags stand inside.
void writeRecordForm(XmlNode& node, const libswf::SwfTag& tag);

/// The elements of all tags.
const XmlNameGroup& tagElements(bool fullForm);
/// Whether an element of this name becomes a tag.
bool isTagElement(std::string_view name, bool fullForm = false);
/// What is wrong with a child of a tag list that is none.
constexpr std::string_view noTagReason = "it is no tag";
/// Builds the tag of an element; null, with a warning, for a name that is no tag's.
std::shared_ptr<libswf::SwfTag> readTag(XmlElement& element);
/// Appends the tags of all child elements.
void readTagList(XmlElement& parent, libswf::SwfTags& tags);

/// A tag that is kept as bytes, read in the movie's form. None for an End; Unknown where its body is not of the layout.
libswf::SwfTags readBytes(libswf::SwfTag& tag, const libswf::SwfContext& movie);

/// Why a record stands as Unknown in a movie of this version and form; nothing when the form shows it. Reads it, and
/// writes its XML, for which some tags need the others of the movie. Takes some times the time and memory of its bytes.
std::optional<std::string> reasonOfUnknown(uint16_t code, std::span<const uint8_t> body,
                                           const libswf::SwfContext& movie);

/// The direct call of the factory: throws std::runtime_error "Trying to get unknown type from factory".
std::shared_ptr<libswf::SwfTag> makeTag(std::string_view elementName);

} // namespace xml2swf
