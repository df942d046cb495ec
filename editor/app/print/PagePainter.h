// Puts a text on pages: a printer's, those of a preview or of a PDF file.
#pragma once

#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>

#include "Job.h"
#include "PrintedText.h"

namespace zelk {

class PagePainter {
public:
    /// What of the pages is wanted, counted from 1.
    struct Pages {
        int first = 1, last = INT_MAX;
    };

    /// [worker thread] Each line with its number in the margin, long ones wrapped; the title and the page's number on
    /// top of each page. Throws JobCancelled, and std::runtime_error when the device does not take the pages.
    PagePainter(QPagedPaintDevice& device, const QFont& font, QString title);
    void paint(PrintedText text, Pages pages, JobProgress& progress);

private:
    using Row = std::vector<PrintedRun>;

    std::vector<Row> rowsOf(const PrintedLine& line) const;
    double widthOf(char32_t character) const;
    bool isOnPaper() const { return _page >= _pages.first && _page <= _pages.last; }
    void beginPage();
    void drawLine(const PrintedLine& line);
    void drawRow(const Row& row);

    QPagedPaintDevice& _device;
    QPainter _painter;
    QFont _font;
    QFontMetricsF _metrics; // on the device
    QString _title;
    Pages _pages;
    double _width = 0, _height = 0, _rowHeight = 0, _ascent = 0, _digit = 0, _margin = 0; // device pixels
    double _y = 0;
    int _page = 0;
};

} // namespace zelk
