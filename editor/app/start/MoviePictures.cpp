#include "MoviePictures.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPainter>

#include <map>

#include "BitmapImages.h"
#include "SwfMovie.h"
#include "SwfTagsControl.h"
#include "TagDrawing.h"
#include "TagWords.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr qint64 mostBytes = 16 << 20;  // of a file that is read for a picture
constexpr int mostMilliseconds = 500;   // of painting
constexpr double mostTwips = 20 * 4096; // of a stage that is believed

SwfMovieSafe readMovie(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || file.size() > mostBytes)
        throw std::runtime_error("no movie for a picture");
    const QByteArray bytes = file.readAll();
    SwfMovieSafe movie;
    movie.parse({bytes.begin(), bytes.end()}, {});
    return movie;
}

QColor backgroundOf(const SwfTags& tags) {
    for (const auto& tag : tags.items()) {
        if (const auto* background = dynamic_cast<const SwfTagSetBackgroundColor*>(tag.get()))
            return {background->color.red, background->color.green, background->color.blue};
    }
    return Qt::white;
}

std::map<uint16_t, SwfTagWrapper> charactersOf(const SwfTags& tags) {
    std::map<uint16_t, SwfTagWrapper> characters;
    for (const auto& tag : tags.items()) {
        if (const auto id = characterId(*tag))
            characters[*id] = tag;
    }
    return characters;
}

// The bitmaps of one movie, each decoded once.
class MovieBitmaps {
public:
    explicit MovieBitmaps(const SwfTags& tags) : _tags(tags) {
        for (const auto& tag : tags.items()) {
            if (const auto* tables = dynamic_cast<const SwfTagJPEGTables*>(tag.get()))
                _tables = tables;
        }
    }

    QImage operator()(uint16_t id) {
        const auto [found, isNew] = _images.try_emplace(id);
        const SwfTag* tag = isNew ? _tags.definition(id) : nullptr;
        if (tag != nullptr) {
            try {
                found->second = _decoder.imageOf(*tag, _tables);
            } catch (const std::exception&) { // It counts as missing.
            }
        }
        return found->second;
    }

private:
    const SwfTags& _tags;
    const SwfTagJPEGTables* _tables = nullptr;
    BitmapImages _decoder;
    std::unordered_map<uint16_t, QImage> _images;
};

QImage picture(const SwfMovieSafe& movie, const QSize& size, const std::stop_token& stop) {
    const SwfRect& frame = movie.frameSize;
    const QRectF stage(QPointF(frame.Xmin, frame.Ymin), QPointF(frame.Xmax, frame.Ymax));
    if (stage.isEmpty() || stage.width() > mostTwips || stage.height() > mostTwips)
        return {};
    const auto bitmaps = std::make_shared<MovieBitmaps>(movie.tags.tags());
    Characters characters;
    characters.definition = [all = charactersOf(movie.tags.tags())](uint16_t id) {
        const auto found = all.find(id);
        return found == all.end() ? nullptr : found->second;
    };
    characters.bitmap = [bitmaps](uint16_t id) { return (*bitmaps)(id); };
    const Drawing drawing = drawMovie(movie.tags.tags(), characters);
    if (drawing.isEmpty())
        return {};
    const double scale = std::min(size.width() / stage.width(), size.height() / stage.height());
    QImage image((stage.size() * scale).toSize().expandedTo({1, 1}), QImage::Format_RGB32);
    image.fill(backgroundOf(movie.tags.tags()));
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(scale, scale);
    painter.translate(-stage.topLeft());
    QElapsedTimer time;
    time.start();
    drawing.paint(painter, characters.bitmap,
                  [&] { return !stop.stop_requested() && time.elapsed() < mostMilliseconds; });
    return image;
}

} // namespace

QImage moviePicture(const QString& fileName, const QSize& size, const std::stop_token& stop) {
    try {
        const SwfMovieSafe movie = readMovie(fileName);
        return picture(movie, size, stop);
    } catch (const std::exception&) { // Opening it tells what is wrong.
        return {};
    }
}

void MoviePictures::want(const QStringList& fileNames, const QSize& size) {
    drop();
    _thread = std::jthread([this, fileNames, size, before = std::move(_thread)](const std::stop_token& stop) mutable {
        if (before.joinable())
            before.join();
        for (const QString& fileName : fileNames) {
            if (stop.stop_requested())
                return;
            const QImage image = moviePicture(fileName, size, stop);
            if (!image.isNull() && !stop.stop_requested())
                QMetaObject::invokeMethod(
                    this, [this, fileName, image] { Q_EMIT drawn(fileName, image); }, Qt::QueuedConnection);
        }
    });
}

} // namespace zelk
