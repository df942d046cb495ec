#include "SystemClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "text/TextControl.h"

namespace zelk {

namespace {

QString formatName(const char* format) { return QString::fromLatin1(format); }

std::optional<std::string> bytesOf(const char* format) {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr || !data->hasFormat(formatName(format)))
        return std::nullopt;
    return data->data(formatName(format)).toStdString();
}

} // namespace

bool SystemClipboard::setTags(const std::string& elements, bool fullForm) {
    auto* data = new QMimeData;
    for (const QString& format : {formatName(tagsFormat), formatName(TextControl::bytesFormat)})
        data->setData(format, QByteArray::fromStdString(elements));
    if (fullForm)
        data->setData(formatName(fullFormat), "full");
    data->setText(QString::fromStdString(elements)); // for other programs
    QGuiApplication::clipboard()->setMimeData(data);
    return true;
}

std::optional<std::string> SystemClipboard::tags() { return bytesOf(tagsFormat); }

bool SystemClipboard::tagsAreFull() { return bytesOf(fullFormat).has_value(); }

std::string SystemClipboard::plainText() {
    const std::optional<std::string> bytes = bytesOf(TextControl::bytesFormat);
    return bytes ? *bytes : QGuiApplication::clipboard()->text().toStdString();
}

} // namespace zelk
