// A tag, compiled and ready to be shown.
#pragma once

#include <memory>
#include <unordered_map>
#include <unordered_set>

#include "BitmapImages.h"
#include "FontCharacters.h"
#include "Glyphs.h"
#include "PreviewRequest.h"
#include "SoundCodec.h"
#include "SwfTag.h"
#include "TagDrawing.h"

namespace zelk {

/// Does not change once it is built: any thread may use it.
class TagPreview {
public:
    /// [worker thread] Takes all that it needs of the request; what cannot be compiled or drawn is told in problem().
    explicit TagPreview(const PreviewRequest& request);

    TagPreview(const TagPreview&) = delete;
    TagPreview& operator=(const TagPreview&) = delete;

    const QString& words() const { return _words; }
    /// Of the tag's record in a movie; negative when it does not compile.
    int64_t bytes() const { return _bytes; }
    const QString& problem() const { return _problem; } ///< empty when there is a drawing
    bool isMorph() const;
    /// At a ratio from 0 to 1, which counts for morph shapes.
    std::shared_ptr<const Drawing> drawing(double ratio) const;
    QImage bitmap(uint16_t characterId) const;
    const std::vector<GlyphCell>& glyphs() const { return _glyphs; }
    /// Null where there is nothing to be heard.
    const std::shared_ptr<const Sound>& sound() const { return _sound; }
    /// What has to be seen of it: a morph shape's whole way.
    QRectF area() const { return _area; }
    /// The bounds that the tag gives itself, for texts; null otherwise.
    QRectF ownBounds() const;

private:
    void build();
    void measure();
    void drawSound();
    void drawGlyphs(const std::shared_ptr<const libswf::SwfGlyphFont>& font);
    void drawTree();
    void addSize(const QSizeF& pixels);
    void loadBitmaps(const Drawing& drawing);
    std::shared_ptr<libswf::SwfTag> definition(uint16_t id);
    std::shared_ptr<libswf::SwfTag> compiled(const std::string& element);
    QImage loadedBitmap(uint16_t id);
    QImage decoded(const libswf::SwfTag& tag);

    const PreviewRequest* _request; // while it is built
    std::shared_ptr<libswf::SwfTag> _tag, _jpegTables;
    std::unordered_map<uint16_t, std::shared_ptr<libswf::SwfTag>> _definitions;
    std::unordered_map<uint16_t, QImage> _bitmaps;
    BitmapImages _images;
    size_t _bytesLeft;
    xml2swf::FontTables _fonts; // in which texts give their glyphs by characters
    std::unordered_set<uint16_t> _fontsAsked;
    int64_t _bytes = -1;
    std::shared_ptr<const Drawing> _drawing;
    std::vector<GlyphCell> _glyphs;
    std::shared_ptr<const Sound> _sound;
    QRectF _area;
    QString _words, _problem;
};

} // namespace zelk
