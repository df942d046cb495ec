#include "HtmlWriter.h"

#include <QColor>

#include <stdexcept>

namespace zelk {

namespace {

constexpr qsizetype piece = 1 << 16; // bytes that are written at once

QString styleSheet() {
    QString rules = QStringLiteral("body{background:#fff;color:#000}pre{font:10pt monospace;white-space:pre-wrap;"
                                   "overflow-wrap:anywhere}\n"
                                   "i{color:#888;font-style:normal;user-select:none}\n");
    for (const auto& [colourClass, colour] : SwfSyntaxHighlighter::colours()) {
        if (colour != 0xFF000000)
            rules += QStringLiteral(".c%1{color:%2}\n").arg(colourClass).arg(QColor(colour).name());
    }
    return rules;
}

QString markedUp(const PrintedRun& run) {
    const auto colour = SwfSyntaxHighlighter::colours().find(run.colour);
    const QString text = run.text.toHtmlEscaped();
    if (colour == SwfSyntaxHighlighter::colours().end() || colour->second == 0xFF000000)
        return text;
    return QStringLiteral("<b class=c%1>%2</b>").arg(run.colour).arg(text);
}

} // namespace

void writeHtml(PrintedText text, const QString& title, QIODevice& device, JobProgress& progress) {
    QByteArray bytes;
    const auto write = [&] {
        if (device.write(bytes) != bytes.size())
            throw std::runtime_error(device.errorString().toStdString());
        bytes.clear();
    };
    bytes = QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>%1</title>\n<style>\n%2"
                           "b{font-weight:normal}\n</style></head>\n<body><pre>\n")
                .arg(title.toHtmlEscaped(), styleSheet())
                .toUtf8();
    const int digits = int(std::to_string(text.lastNumber()).size());
    while (const std::optional<PrintedLine> line = text.next()) {
        bytes += QStringLiteral("<i>%1  </i>").arg(line->number, digits).toUtf8();
        for (const PrintedRun& run : line->runs)
            bytes += markedUp(run).toUtf8();
        bytes += '\n';
        if (bytes.size() >= piece) {
            write();
            progress.report(text.progress());
        }
    }
    bytes += "</pre></body></html>\n";
    write();
}

} // namespace zelk
