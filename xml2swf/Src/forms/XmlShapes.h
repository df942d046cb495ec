// The XML form of shape records and styles, which shapes, morph shapes and fonts share.
#pragma once

#include <memory>

#include "SwfShapeRecords.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"

namespace xml2swf {

/// Which line styles an element holds: LineStyles, or LineStyles2 with LINESTYLE2.
enum class LineStyleKind : uint8_t { lineStyle, lineStyle2 };

/// One child element (Line, Curve or StyleChange) per record.
void writeShapeRecords(XmlNode& parent, const libswf::SwfShapeRecords& records,
                       LineStyleKind newStyles = LineStyleKind::lineStyle);
/// Appends a record for each child of those names.
void readShapeRecords(XmlElement& parent, libswf::SwfShapeRecords& records,
                      LineStyleKind newStyles = LineStyleKind::lineStyle);

/// One child element per style.
void writeXml(XmlNode& node, const libswf::SwfFillStyles& styles);
void readXml(XmlElement& element, libswf::SwfFillStyles& styles);

/// One child element LineStyle per style, all of them of the kind given.
void writeLineStyles(XmlNode& node, const libswf::SwfLineStyles& styles, LineStyleKind kind);
void readLineStyles(XmlElement& element, libswf::SwfLineStyles& styles, LineStyleKind kind);

/// The flags of LINESTYLE2 as integers; shapes and morph shapes spell the end cap's name differently.
void writeLineFlags(XmlNode& node, const libswf::SwfLineFlags& flags, const char* endCapName);
void readLineFlags(XmlElement& element, libswf::SwfLineFlags& flags, const char* endCapName);

/// The flags byte of DefineShape4 and DefineMorphShape2. The full form shows all bits, of which only DefineShape4 has
/// UseFillWindingRule; in the classic one the reserved bits are read only.
void writeStrokeFlags(XmlNode& node, uint8_t flags, bool hasWindingRule);
uint8_t readStrokeFlags(XmlElement& element, bool hasWindingRule);

/// The type byte of a bitmap fill.
inline constexpr XmlName bitmapFillTypes[] = {{"Tiled", libswf::SwfFillType::tiledBitmap},
                                              {"Clipped", libswf::SwfFillType::clippedBitmap},
                                              {"NonSmoothedTiled", libswf::SwfFillType::nonSmoothedTiledBitmap},
                                              {"NonSmoothedClipped", libswf::SwfFillType::nonSmoothedClippedBitmap}};

/// FocalPoint and the like: an 8.8 number, given by its two bytes in file order. Full form.
void writeFocalPoint(XmlNode& node, std::string_view name, const uint8_t (&bytes)[2]);
void readFocalPoint(XmlElement& element, std::string_view name, uint8_t (&bytes)[2]);

/// SpreadMode and InterpolationMode of a gradient.
void writeGradientModes(XmlNode& node, const libswf::SwfGradientFlags& flags);
/// Leaves the count 0.
void readGradientModes(XmlElement& element, libswf::SwfGradientFlags& flags);

} // namespace xml2swf
