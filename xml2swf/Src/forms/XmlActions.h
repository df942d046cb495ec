// Action lists and clip actions as XML, for the tags that carry them.
#pragma once

#include "SwfAction.h"
#include "SwfClipActions.h"
#include "XmlElement.h"
#include "XmlElementWriter.h"
#include "XmlQuickElement.h"

namespace xml2swf {

/// One child element of `parent` per action.
void writeActions(XmlNode& parent, const libswf::SwfActions& actions);
/// Appends the actions of all child elements. A name that is no action's is skipped with a warning; bodies nested
/// deeper than SwfContext::maxDepth throw SwfException code 2.
void readActions(XmlElement& parent, libswf::SwfActions& actions);
void readActions(XmlQuickElement& parent, libswf::SwfActions& actions);

/// Bytes of the actions that the text begins with, in the form in which they are mostly written; moves the text on to
/// the end tag of Actions. Nothing for other forms, and what ActionRun would keep as objects.
std::optional<libswf::SwfBytes> compileActions(XmlReadContext& context, std::string_view& text);

/// One ClipAction child per record, its actions directly inside.
void writeXml(XmlNode& node, const libswf::SwfClipActions& actions);
void readXml(XmlElement& element, libswf::SwfClipActions& actions);

} // namespace xml2swf
