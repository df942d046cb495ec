#include "SystemClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace zelk {

bool SystemClipboard::setTags(const std::string& elements) {
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(tagsFormat), QByteArray::fromStdString(elements));
    data->setText(QString::fromStdString(elements));
    QGuiApplication::clipboard()->setMimeData(data);
    return true;
}

std::optional<std::string> SystemClipboard::tags() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr || !data->hasFormat(QString::fromLatin1(tagsFormat)))
        return std::nullopt;
    return data->data(QString::fromLatin1(tagsFormat)).toStdString();
}

std::string SystemClipboard::plainText() { return QGuiApplication::clipboard()->text().toStdString(); }

} // namespace zelk
