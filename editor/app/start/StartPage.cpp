#include "StartPage.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScopedValueRollback>
#include <QToolButton>
#include <QVBoxLayout>

#include "IconDrawing.h"

namespace zelk {

namespace {

constexpr QSize pictureSize(176, 118);

QLabel* heading(const QString& text, double scale, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    label->setFont(font);
    return label;
}

// Another version of a file has another picture.
QString keyOf(const QString& fileName) {
    const QFileInfo info(fileName);
    return QStringLiteral("%1|%2|%3").arg(fileName).arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
}

} // namespace

StartPage::StartPage(const QList<QAction*>& actions, QWidget* parent)
    : QWidget(parent), _files(new QListWidget(this)), _pictures(this) {
    setAutoFillBackground(true);
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(32, 28, 24, 16);
    columns->setSpacing(32);
    columns->addLayout(commandColumn(actions));
    columns->addLayout(filesColumn(), 1);
    setColors();
    const auto open = [this](const QListWidgetItem* item) { Q_EMIT openAsked(item->data(Qt::UserRole).toString()); };
    connect(_files, &QListWidget::itemClicked, this, open);
    connect(_files, &QListWidget::itemActivated, this, open); // by Return
    connect(&_pictures, &MoviePictures::drawn, this, [this](const QString& fileName, const QImage& picture) {
        _known.insert(keyOf(fileName), picture);
        for (int row = 0; row < _files->count(); ++row) {
            if (_files->item(row)->data(Qt::UserRole) == fileName)
                _files->item(row)->setIcon(iconOf(picture));
        }
    });
}

QVBoxLayout* StartPage::commandColumn(const QList<QAction*>& actions) {
    auto* column = new QVBoxLayout;
    column->setSpacing(2); // not that of the columns
    column->addWidget(heading(QStringLiteral("Zelk"), 2, this));
    column->addSpacing(12);
    for (QAction* action : actions) {
        auto* button = new QToolButton(this);
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setAutoRaise(true);
        button->setIconSize({22, 22});
        button->setFocusPolicy(Qt::StrongFocus);
        column->addWidget(button, 0, Qt::AlignLeft);
    }
    column->addStretch(1);
    return column;
}

QVBoxLayout* StartPage::filesColumn() {
    QLabel* title = heading(tr("&Recent files"), 1.3, this);
    title->setBuddy(_files);
    _files->setAccessibleName(tr("Recent files"));
    _files->setViewMode(QListView::IconMode);
    _files->setMovement(QListView::Static);
    _files->setResizeMode(QListView::Adjust);
    _files->setIconSize(pictureSize);
    _files->setGridSize(pictureSize + QSize(20, 44));
    _files->setTextElideMode(Qt::ElideMiddle);
    _files->setUniformItemSizes(true);
    _files->setFrameShape(QFrame::NoFrame);
    _files->installEventFilter(this);
    auto* hint = new QLabel(tr("Movies, projects and XML files can be dropped anywhere in this window."), this);
    hint->setWordWrap(true);
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(title);
    column->addWidget(_files, 1);
    column->addWidget(hint);
    return column;
}

void StartPage::showFiles(const std::vector<std::string>& fileNames) {
    const QString selected = _files->currentItem() ? _files->currentItem()->data(Qt::UserRole).toString() : QString();
    _files->clear();
    QStringList unknown;
    for (const std::string& name : fileNames) {
        const QString fileName = QString::fromStdString(name);
        const QImage picture = _known.value(keyOf(fileName));
        if (picture.isNull())
            unknown.append(fileName);
        auto* item = new QListWidgetItem(iconOf(picture), QFileInfo(fileName).fileName(), _files);
        item->setData(Qt::UserRole, fileName);
        item->setToolTip(fileName);
        if (fileName == selected)
            _files->setCurrentItem(item);
    }
    if (_files->currentItem() == nullptr)
        _files->setCurrentRow(0);
    // An empty list would take the keyboard and show nothing of it.
    _files->setFocusPolicy(_files->count() > 0 ? Qt::StrongFocus : Qt::NoFocus);
    setFocusProxy(_files->count() > 0 ? static_cast<QWidget*>(_files) : findChild<QToolButton*>());
    _pictures.want(unknown, pictureSize * devicePixelRatioF());
}

// All of one size, so that names stand in rows. Without a picture it is an empty frame with the program's sign.
QIcon StartPage::iconOf(const QImage& picture) const {
    const double ratio = devicePixelRatioF();
    QPixmap icon(pictureSize * ratio);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    const QRect all = icon.rect();
    QRect area = all;
    if (picture.isNull()) {
        const int side = all.height() / 2;
        area = QRect(0, 0, all.width() * 3 / 4, all.height());
        area.moveCenter(all.center());
        QRect sign(0, 0, side, side);
        sign.moveCenter(all.center());
        programIcon().paint(&painter, sign, Qt::AlignCenter, QIcon::Disabled);
    } else {
        area = QRect(QPoint(), picture.size().scaled(all.size(), Qt::KeepAspectRatio));
        area.moveCenter(all.center());
        painter.drawImage(area, picture);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area.adjusted(0, 0, -1, -1));
    painter.end();
    icon.setDevicePixelRatio(ratio);
    return icon;
}

void StartPage::hideEvent(QHideEvent* event) {
    _pictures.drop();
    QWidget::hideEvent(event);
}

bool StartPage::eventFilter(QObject* watched, QEvent* event) {
    const auto* item = _files->currentItem();
    if (watched == _files && event->type() == QEvent::KeyPress && item != nullptr) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete) {
            Q_EMIT forgetAsked(item->data(Qt::UserRole).toString());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void StartPage::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !_setsColors)
        setColors();
}

// Page and list look like a sheet of paper.
void StartPage::setColors() {
    const QScopedValueRollback guard(_setsColors, true);
    QPalette colors = QApplication::palette();
    colors.setColor(QPalette::Window, colors.color(QPalette::Base));
    setPalette(colors);
}

} // namespace zelk
