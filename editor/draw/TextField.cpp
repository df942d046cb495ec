#include <QFont>
#include <QFontMetricsF>
#include <QRegularExpression>
#include <algorithm>

#include "DrawLimits.h"
#include "Glyphs.h"
#include "Texts.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr double gutter = 40; // twips around the text

// The letters of one font at one height, measured and drawn in twips.
class Letters {
public:
    virtual ~Letters() = default;
    virtual double advance(char16_t letter) = 0;
    /// The baseline at 0.
    virtual QPainterPath path(char16_t letter) = 0;
    virtual double ascent() const = 0;
    virtual double lineHeight() const = 0;
};

class OutlineLetters : public Letters {
public:
    OutlineLetters(std::shared_ptr<SwfTagDefineFont2> font, double height, size_t& edges)
        : _font(std::move(font)), _scale(height / emSize(*_font)), _height(height), _glyphs(_font, edges) {
        for (uint32_t i = 0; i < _font->codes.size(); ++i)
            _indices.try_emplace(_font->codes[i], i);
    }

    double advance(char16_t letter) override {
        const auto found = _indices.find(letter);
        if (found == _indices.end())
            return _height / 2;
        if (found->second < _font->advances.size())
            return _font->advances[found->second] * _scale;
        return path(letter).boundingRect().right() + _height / 10;
    }
    QPainterPath path(char16_t letter) override {
        const auto found = _indices.find(letter);
        if (found == _indices.end() || !_glyphs.has(found->second))
            return {};
        return QTransform::fromScale(_scale, _scale).map(_glyphs.at(found->second));
    }
    double ascent() const override { return _font->ascent != 0 ? _font->ascent * _scale : _height * 0.8; }
    double lineHeight() const override {
        return _font->ascent != 0 ? (_font->ascent + _font->descent) * _scale : _height * 1.2;
    }

private:
    std::shared_ptr<SwfTagDefineFont2> _font;
    double _scale, _height;
    Glyphs _glyphs;
    std::unordered_map<uint16_t, uint32_t> _indices;
};

class SystemLetters : public Letters {
public:
    SystemLetters(const SwfTagDefineFont2* named, double height)
        : _font(fontFor(named)), _metrics(_font), _scale(height / pixels) {}

    double advance(char16_t letter) override { return _metrics.horizontalAdvance(QChar(letter)) * _scale; }
    QPainterPath path(char16_t letter) override {
        QPainterPath path;
        path.addText(0, 0, _font, QString(QChar(letter)));
        return QTransform::fromScale(_scale, _scale).map(path);
    }
    double ascent() const override { return _metrics.ascent() * _scale; }
    double lineHeight() const override { return _metrics.height() * _scale; }

private:
    static constexpr int pixels = 100; // whatever the height, so that the system's hinting does not change the widths

    static QFont fontFor(const SwfTagDefineFont2* named) {
        QFont font;
        if (named != nullptr) {
            const std::string_view name = named->fontName.view();
            const QString family = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
            const bool isSerif =
                family.startsWith(QStringLiteral("_serif")) || family.contains(QStringLiteral("Times"));
            font.setFamily(family);
            font.setStyleHint(isSerif ? QFont::Serif : QFont::SansSerif);
            font.setBold(named->bold);
            font.setItalic(named->italic);
        }
        font.setPixelSize(pixels);
        return font;
    }

    QFont _font;
    QFontMetricsF _metrics;
    double _scale;
};

struct FieldText {
    QString text;
    QColor color;
    double height = 0; // twips
};

QString unescaped(QString text) {
    for (const auto& [entity, letter] :
         {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&nbsp;", " "}, {"&amp;", "&"}})
        text.replace(QLatin1String(entity), QLatin1String(letter));
    return text;
}

void readHtml(FieldText& field) {
    static const QRegularExpression color(QStringLiteral("<font[^>]*\\bcolor=[\"']?(#[0-9a-f]{6})"),
                                          QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression size(QStringLiteral("<font[^>]*\\bsize=[\"']?([0-9]{1,3})"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression lineEnds(QStringLiteral("<br\\s*/?>|</p>|</li>"),
                                             QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
    if (const auto found = color.match(field.text); found.hasMatch())
        field.color = QColor(found.captured(1));
    if (const auto found = size.match(field.text); found.hasMatch())
        field.height = found.captured(1).toInt() * 20;
    field.text.replace(lineEnds, QStringLiteral("\n"));
    field.text = unescaped(field.text.remove(tags));
}

FieldText textOf(const SwfTagDefineEditText& field) {
    FieldText result;
    result.color = field.hasTextColor ? colorOf(field.color, true) : QColor(Qt::black);
    result.height = field.hasFont && field.fontHeight != 0 ? field.fontHeight : 240;
    if (!field.hasText)
        return result;
    const std::string_view bytes = field.initialText.view().substr(0, DrawLimits::fieldCharacters);
    result.text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (result.text.contains(QChar::ReplacementCharacter)) // Movies up to version 5 do not have UTF-8.
        result.text = QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (field.html)
        readHtml(result);
    result.text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    if (field.password)
        result.text.fill(QChar(0x2022));
    return result;
}

struct Line {
    QString text;
    double width = 0;
};

double widthOf(QStringView text, Letters& letters) {
    double width = 0;
    for (QChar letter : text)
        width += letters.advance(letter.unicode());
    return width;
}

// Breaks at blanks; a word that is wider than the field stays in one piece.
std::vector<Line> linesOf(const FieldText& field, Letters& letters, double room) {
    std::vector<Line> lines;
    for (const QString& paragraph : field.text.split(u'\n')) {
        Line line;
        for (const QString& word : paragraph.split(u' ')) {
            const QString piece = line.text.isEmpty() ? word : u' ' + word;
            const double width = widthOf(piece, letters);
            if (!line.text.isEmpty() && line.width + width > room) {
                lines.push_back(line);
                line = {word, widthOf(word, letters)};
            } else {
                line.text += piece;
                line.width += width;
            }
        }
        lines.push_back(line);
    }
    return lines;
}

QRectF rectOf(const SwfRect& rect) {
    return QRectF(QPointF(rect.Xmin, rect.Ymin), QPointF(rect.Xmax, rect.Ymax)).normalized();
}

void addBorder(Drawing& drawing, const QRectF& area) {
    QPainterPath path;
    path.addRect(area);
    Paint white;
    white.color = Qt::white;
    Stroke black;
    black.width = 20;
    black.paint.color = Qt::black;
    black.join = Qt::MiterJoin;
    drawing.add({path, white, {}});
    drawing.add({path, {}, black});
}

double startOf(const SwfTagDefineEditText& field, const QRectF& room, double width) {
    if (field.hasLayout && field.align == 1)
        return room.right() - width;
    if (field.hasLayout && field.align == 2)
        return room.center().x() - width / 2;
    return room.left();
}

} // namespace

void addTextField(Drawing& drawing, const SwfTagDefineEditText& field, const FontLookup& fonts, size_t& edges) {
    const QRectF area = rectOf(field.bounds);
    if (field.border)
        addBorder(drawing, area);
    const FieldText text = textOf(field);
    const auto font = std::dynamic_pointer_cast<SwfTagDefineFont2>(
        field.hasFont && fonts ? fonts(field.fontId) : std::shared_ptr<SwfGlyphFont>());
    std::unique_ptr<Letters> letters;
    if (field.useOutlines && font != nullptr && font->glyphs.count() > 0)
        letters = std::make_unique<OutlineLetters>(font, text.height, edges);
    else
        letters = std::make_unique<SystemLetters>(font.get(), text.height);
    const double left = field.hasLayout ? field.leftMargin : 0, right = field.hasLayout ? field.rightMargin : 0;
    const QRectF room = area.adjusted(gutter + left, gutter, -gutter - right, -gutter);
    const double step = letters->lineHeight() + (field.hasLayout ? field.leading : 0);
    double y = room.top() + letters->ascent();
    Paint paint;
    paint.color = text.color;
    for (const Line& line : linesOf(text, *letters, field.wordWrap ? room.width() : 1e9)) {
        double x = startOf(field, room, line.width);
        for (QChar letter : line.text) {
            drawing.add({letters->path(letter.unicode()).translated(x, y), paint, {}});
            x += letters->advance(letter.unicode());
        }
        y += step;
    }
}

} // namespace zelk
