// The words that are coloured as names of elements. A word that stands in two lists takes the class of the later one.
#pragma once

namespace zelk {

// clang-format off
inline constexpr const char16_t* tagWords[] = {
    u"Movie", u"End", u"ShowFrame", u"DefineShape", u"PlaceObject", u"RemoveObject", u"DefineBits", u"DefineButton",
    u"JPEGTables", u"SetBackgroundColor", u"DefineFont", u"DefineFont4", u"DefineText", u"DoAction",
    u"DefineFontInfo", u"DefineSound", u"StartSound", u"DefineButtonSound", u"SoundStreamHead", u"SoundStreamBlock",
    u"DefineBitsLossless", u"DefineBitsJPEG2", u"DefineShape2", u"DefineButtonCxform", u"Protect", u"PlaceObject2",
    u"RemoveObject2", u"DefineShape3", u"DefineText2", u"DefineButton2", u"DefineBitsJPEG3", u"DefineBitsJPEG4",
    u"DefineBitsLossless2", u"DefineEditText", u"DefineSprite", u"FrameLabel", u"SoundStreamHead2",
    u"DefineMorphShape", u"DefineFont2", u"ExportAssets", u"ImportAssets", u"EnableDebugger", u"DoInitAction",
    u"DefineVideoStream", u"VideoFrame", u"DefineFontInfo2", u"EnableDebugger2", u"ScriptLimits", u"SetTabIndex",
    u"FileAttributes", u"PlaceObject3", u"ImportAssets2", u"DefineFontAlignZones", u"CSMTextSettings",
    u"DefineFont3", u"SymbolClass", u"Metadata", u"DefineScalingGrid", u"DoABC", u"DefineShape4",
    u"DefineMorphShape2", u"DefineSceneAndFrameLabelData", u"DefineBinaryData", u"DefineFontName", u"StartSound2",
    u"Unknown",
};

inline constexpr const char16_t* structureWords[] = {
    u"Actions", u"Matrix", u"Bounds", u"FillStyles", u"SolidFillStyle", u"LineStyles", u"Edges", u"StyleChange",
    u"Curve", u"Line", u"Line", u"NewStyles", u"TextRecords", u"TextRecord", u"GlyphEntries", u"GlyphEntry",
    u"LineStyle", u"CodesTable", u"ButtonRecords", u"ButtonRecord", u"ButtonCondactions", u"ColorTransform",
    u"Data", u"FontData", u"JPEGData", u"JPEGTables", u"BitmapAlphaData", u"PngData", u"SoundData",
    u"StreamSoundData", u"DoABCData", u"ZoneRecords", u"BitsField", u"ZoneRecord", u"PlaybackInfo", u"StreamInfo",
    u"GradientRecords", u"GradientRecord", u"GradientFillStyle", u"GlyphShapeTable", u"Glyphs", u"ButtonCondaction",
    u"Asset", u"Params", u"SoundInfo", u"InitialText", u"RegisterParams", u"RegisterParam", u"SoundInfoRollOver",
    u"SoundInfoPress", u"BitmapFillStyle", u"Float", u"Null", u"Undefined", u"Register", u"Boolean", u"Double",
    u"String", u"Integer", u"Constant8", u"Constant16", u"CString", u"CodesTable", u"ZoneData", u"ClipActions",
    u"ClipAction", u"AdvanceTable", u"BoundsTable", u"Bound", u"KerningTable", u"KerningRecord", u"ShapeBounds",
    u"EdgeBounds", u"LineStyles2", u"Shapes", u"FilterList", u"DropShadowFilter", u"BlurFilter", u"StartBounds",
    u"EndBounds", u"MorphFillStyles", u"MorphLineStyles", u"StartEdges", u"EndEdges", u"MorphLineStyles2",
    u"SoundEnvelope", u"StartEdgeBounds", u"EndEdgeBounds", u"MorphLineStyle", u"MorphSolidFillStyle", u"Rect",
    u"MorphGradientRecord", u"ConvolutionFilter", u"GradientColors", u"GradientRation", u"GradientGlow",
    u"GlowFilter", u"ColorMatrixFilter", u"BevelFilter", u"GradientBevelFilter", u"TryActions", u"CatchActions",
    u"FinallyActions", u"Try", u"MorphGradientFillStyle", u"StartMatrix", u"EndMatrix", u"MorphGradientRecords",
};

inline constexpr const char16_t* actionWords[] = {
    u"NextFrame", u"DefineFunction", u"ACTION_NEXTFRAME", u"PreviousFrame", u"Play", u"Stop", u"ToggleQuality",
    u"StopSounds", u"Add", u"Subtract", u"Multiply", u"Divide", u"Equals", u"Less", u"And", u"Or", u"Not",
    u"StringEquals", u"StringLength", u"StringExtract", u"Pop", u"Push", u"ToInteger", u"GetVariable",
    u"SetVariable", u"SetTarget2", u"StringAdd", u"GetProperty", u"SetProperty", u"CloneSprite", u"Trace",
    u"StartDrag", u"EndDrag", u"StringLess", u"Throw", u"CastOp", u"ImplementsOp", u"RandomNumber",
    u"MBStringLength", u"CharToAscii", u"AsciiToChar", u"GetTime", u"MBStringExtract", u"MBCharToAscii",
    u"MBAsciiToChar", u"Delete", u"Delete2", u"DefineLocal", u"CallFunction", u"Return", u"Modulo", u"NewObject",
    u"DefineLocal2", u"InitArray", u"InitObject", u"TypeOf", u"TargetPath", u"Enumerate", u"Add2", u"Less2",
    u"Equals2", u"ConvertToNumber", u"ConvertToString", u"PushDuplicate", u"StackSwap", u"GetMember", u"SetMember",
    u"Increment", u"Decrement", u"CallMethod", u"NewMethod", u"InstanceOf", u"Enumerate2", u"BitAnd", u"BitOr",
    u"BitXor", u"BitLShift", u"BitRShift", u"BitURShift", u"StrictEquals", u"Greater", u"StringGreater", u"Extends",
    u"Call", u"StoreRegister", u"GoToFrame", u"GetURL", u"WaitForFrame", u"SetTarget", u"GotoLabel", u"Push",
    u"Jump", u"If", u"GetURL2", u"GoToFrame2", u"WaitForFrame2", u"ConstantPool", u"DefineFunction2", u"With",
    u"UnknownAction", u"RemoveSprite",
};

inline constexpr const char16_t* fieldWords[] = {
    u"Move", u"SetFill0", u"SetFill1", u"SetLine", u"Scale", u"Translate", u"Constant", u"Id", u"FontId",
    u"FontHeight", u"TextColor", u"Align", u"LeftMargin", u"RightMargin", u"Indent", u"Leading", u"VarName",
    u"LanguageCode", u"FontName", u"Scene", u"Symbol", u"Rotate", u"Code", u"Param", u"Ascent", u"BlurX", u"BlurY",
    u"BitVal", u"Angle", u"Distance", u"Strength", u"ClassName", u"Descent", u"Value",
};
// clang-format on

} // namespace zelk
