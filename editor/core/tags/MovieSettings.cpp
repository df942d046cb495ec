#include "MovieSettings.h"

#include <optional>

#include "AttributeText.h"
#include "Conversion.h"
#include "Exceptions.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr int64_t twipsPerPixel = 20;

XmlStartTag startTagOf(std::string_view text) {
    const auto tag = movieStartTag(text);
    if (!tag)
        throw NotMovieException::noMovie();
    return *tag;
}

struct Field {
    const char* attribute;
    std::string MovieSettings::*value;
    const char* missing;
};

constexpr Field fields[] = {{"SwfVersion", &MovieSettings::version, "7"},
                            {"Width", &MovieSettings::width, "550"},
                            {"Height", &MovieSettings::height, "400"},
                            {"FrameRate", &MovieSettings::frameRate, "12"}};

// What a start tag compiles to.
struct Header : IXml2SwfConversionTarget {
    int32_t width = 0, height = 0;
    bool isCompressed = true;
    std::optional<libswf::SwfRect> stage;

    void movieHeader(uint8_t, int32_t w, int32_t h, float, bool compressed) override {
        width = w;
        height = h;
        isCompressed = compressed;
    }
    void append(std::shared_ptr<libswf::SwfTag>) override {}
    void frameSize(const libswf::SwfRect& rect) override { stage = rect; }
};

Header compiled(const std::string& startTag) {
    Header header;
    xmlToSwf(startTag.ends_with("/>") ? startTag : startTag + "</Movie>", header, {});
    return header;
}

MovieSettings settingsOf(std::string_view startTag) {
    MovieSettings settings;
    for (const Field& field : fields)
        settings.*field.value = attributeText(startTag, field.attribute).value_or(field.missing);
    settings.fullForm = attributeText(startTag, "Form") == fullForm;
    std::string relevant = "<Movie/>"; // The other attributes may be wrong.
    for (const char* name : {"SwfVersion", "IsCompressed"}) {
        if (const auto value = attributeText(startTag, name))
            setAttributeText(relevant, name, *value);
    }
    try {
        settings.isCompressed = compiled(relevant).isCompressed;
    } catch (const std::exception&) { // A wrong version is shown as it is.
    }
    return settings;
}

} // namespace

std::string headerLine(const MovieSettings& settings) {
    return "[ SWF version: " + settings.version + " Width: " + settings.width + " Height: " + settings.height +
           " Frame rate: " + settings.frameRate + " Compressed: " + (settings.isCompressed ? "Yes" : "No") + " ]";
}

MovieSettings movieSettings(std::string_view text) {
    const XmlStartTag tag = startTagOf(text);
    return settingsOf(text.substr(tag.start, tag.end - tag.start));
}

TextChange changeMovieSettings(std::string_view text, const MovieSettings& settings) {
    const XmlStartTag tag = startTagOf(text);
    TextChange change{tag.start, tag.end, std::string(text.substr(tag.start, tag.end - tag.start))};
    const MovieSettings before = settingsOf(change.text);
    for (const Field& field : fields) {
        if (settings.*field.value != before.*field.value)
            setAttributeText(change.text, field.attribute, settings.*field.value);
    }
    const Header header = compiled(change.text);
    if (header.isCompressed != settings.isCompressed)
        setAttributeText(change.text, "IsCompressed", settings.isCompressed ? "true" : "false");
    if (header.stage && settings.width != before.width)
        setAttributeText(change.text, "MaxX", std::to_string(header.stage->Xmin + twipsPerPixel * header.width));
    if (header.stage && settings.height != before.height)
        setAttributeText(change.text, "MaxY", std::to_string(header.stage->Ymin + twipsPerPixel * header.height));
    return change;
}

} // namespace zelk
