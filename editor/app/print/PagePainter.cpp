#include "PagePainter.h"

#include <stdexcept>

namespace zelk {

PagePainter::PagePainter(QPagedPaintDevice& device, const QFont& font, QString title)
    : _device(device), _font(font), _metrics(font, &device), _title(std::move(title)) {}

void PagePainter::paint(PrintedText text, Pages pages, JobProgress& progress) {
    if (!_painter.begin(&_device))
        throw std::runtime_error("the printer does not take the pages");
    _pages = pages;
    _painter.setFont(_font);
    _width = _painter.viewport().width();
    _height = _painter.viewport().height();
    _rowHeight = _metrics.lineSpacing();
    _ascent = _metrics.ascent();
    _digit = _metrics.horizontalAdvance(u'0');
    _margin = _digit * (std::to_string(text.lastNumber()).size() + 2);
    if (_margin + 10 * _digit > _width || 4 * _rowHeight > _height)
        throw std::runtime_error("the page is too small for the text");
    beginPage();
    while (const std::optional<PrintedLine> line = text.next()) {
        progress.report(text.progress());
        drawLine(*line);
        if (_page > _pages.last)
            break;
    }
    if (!_painter.end())
        throw std::runtime_error("the pages could not be written");
}

void PagePainter::drawLine(const PrintedLine& line) {
    bool isFirst = true;
    for (const Row& row : rowsOf(line)) {
        if (_y + _rowHeight > _height)
            beginPage();
        if (isOnPaper()) {
            if (isFirst) {
                const QString number = QString::number(line.number);
                _painter.setPen(Qt::gray);
                _painter.drawText(QPointF(_margin - _digit * double(number.size() + 1), _y + _ascent), number);
            }
            drawRow(row);
        }
        isFirst = false;
        _y += _rowHeight;
    }
}

void PagePainter::beginPage() {
    ++_page;
    _y = 2 * _rowHeight;
    if (!isOnPaper())
        return;
    if (_page != _pages.first)
        _device.newPage();
    _painter.setPen(Qt::black);
    const QRectF head(0, 0, _width, _rowHeight);
    const QString number = QString::number(_page);
    const double room = _width - _digit * double(number.size() + 2);
    _painter.drawText(head, Qt::AlignLeft, _metrics.elidedText(_title, Qt::ElideMiddle, room));
    _painter.drawText(head, Qt::AlignRight, number);
    _painter.drawLine(QPointF(0, _rowHeight * 1.4), QPointF(_width, _rowHeight * 1.4));
}

double PagePainter::widthOf(char32_t character) const {
    if (character < 0x300) // All of one width, and nearly all that there is.
        return _digit;
    return _metrics.horizontalAdvance(QString::fromUcs4(&character, 1));
}

// Wrapped at any character, as the window does.
std::vector<PagePainter::Row> PagePainter::rowsOf(const PrintedLine& line) const {
    std::vector<Row> rows(1);
    double room = _width - _margin;
    for (const PrintedRun& run : line.runs) {
        qsizetype start = 0, at = 0;
        const auto take = [&] {
            if (at > start)
                rows.back().push_back({run.text.mid(start, at - start), run.colour});
            start = at;
        };
        while (at < run.text.size()) {
            const bool isPair = run.text[at].isHighSurrogate() && at + 1 < run.text.size();
            const double width =
                widthOf(isPair ? QChar::surrogateToUcs4(run.text[at], run.text[at + 1]) : run.text[at].unicode());
            if (width > room) {
                take();
                rows.emplace_back();
                room = _width - _margin;
            }
            room -= width;
            at += isPair ? 2 : 1;
        }
        take();
    }
    return rows;
}

void PagePainter::drawRow(const Row& row) {
    double x = _margin;
    for (const PrintedRun& run : row) {
        const auto colour = SwfSyntaxHighlighter::colours().find(run.colour);
        _painter.setPen(colour == SwfSyntaxHighlighter::colours().end() ? QColor(Qt::black) : QColor(colour->second));
        _painter.drawText(QPointF(x, _y + _ascent), run.text);
        for (const char32_t character : run.text.toUcs4())
            x += widthOf(character);
    }
}

} // namespace zelk
