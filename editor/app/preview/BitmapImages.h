// Bitmap characters as images, as many as there is room for.
#pragma once

#include <QImage>

#include "SwfTagsBitmap.h"

namespace zelk {

class BitmapImages {
public:
    /// Premultiplied pixels of a bitmap tag; `tables` are those of the movie, may be null. Throws SwfException for what
    /// cannot be decoded, and for a bitmap too big beside those that were asked for before.
    QImage imageOf(const libswf::SwfTag& tag, const libswf::SwfTagJPEGTables* tables);

private:
    void checkRoom(size_t width, size_t height) const;

    size_t _pixelsLeft = 32'000'000;
};

} // namespace zelk
