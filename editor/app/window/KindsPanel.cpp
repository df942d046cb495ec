#include "KindsPanel.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTreeView>

#include "CommandTable.h"
#include "KindsModel.h"
#include "PreviewPane.h"
#include "TagPreview.h"

namespace zelk {

namespace {

constexpr int pictureSize = KindsModel::pictureSize;
constexpr int mostMilliseconds = 20; // for one picture
constexpr size_t mostWanted = 100;   // more rows are not on a screen

QImage smallPicture(const TagPreview& preview) {
    const auto drawing = preview.drawing(0);
    const QRectF area = drawing->bounds();
    if (drawing->isEmpty() || area.isEmpty())
        return {};
    QImage image(pictureSize, pictureSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const double scale = (pictureSize - 2) / std::max(area.width(), area.height());
    QPainter painter(&image);
    painter.translate(pictureSize / 2.0, pictureSize / 2.0);
    painter.scale(scale, scale);
    painter.translate(-area.center());
    QElapsedTimer time;
    time.start();
    drawing->paint(
        painter, [&preview](uint16_t id) { return preview.bitmap(id); },
        [&] { return time.elapsed() < mostMilliseconds; });
    return image;
}

} // namespace

KindsPanel::KindsPanel(QWidget* parent)
    : ListPanel(tr("Kinds"), QStringLiteral("kinds"), Place::side, parent), _model(new KindsModel(this)),
      _inside(new QCheckBox(tr("Inside tags"), this)), _worker(new PreviewWorker(this)) {
    setUpTree();
    connect(&filter(), &QLineEdit::textChanged, this, &KindsPanel::applyFilter);
    connect(_inside, &QCheckBox::toggled, this, &KindsPanel::applyFilter);
    connect(&_filtering, &QTimer::timeout, this, &KindsPanel::filterMore);
    connect(list().selectionModel(), &QItemSelectionModel::currentChanged, this, &KindsPanel::showPlace);
    connect(&list(), &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (const auto place = _model->placeOf(index))
            Q_EMIT editAsked(*place);
    });
    connect(&list(), &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        if (const auto place = _model->placeOf(list().indexAt(position)))
            Q_EMIT menuAsked(list().viewport()->mapToGlobal(position), *place);
    });
    connect(_model, &KindsModel::lookWanted, this, &KindsPanel::wantLook);
    connect(_worker, &PreviewWorker::done, this, &KindsPanel::takeLook);
}

void KindsPanel::setUpTree() {
    top().addWidget(_inside);
    _inside->setToolTip(tr("Look for the filter's text in all of a tag, not only in its attributes and names"));
    list().setModel(_model);
    list().setExpandsOnDoubleClick(false);
    list().setIconSize({pictureSize, pictureSize});
    list().setContextMenuPolicy(Qt::CustomContextMenu);
    list().setAccessibleName(tr("Tags by kind"));
    list().header()->setStretchLastSection(false);
    list().header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list().header()->resizeSection(KindsModel::bytes, 64);
    list().setMinimumWidth(220);
}

// --- what is shown ---------------------------------------------------------------------------------------------------

void KindsPanel::showDocument(DocumentView* view) {
    if (view == _view)
        return;
    if (_view != nullptr)
        disconnect(&DocumentTags::of(_view->editor()), nullptr, this, nullptr);
    _view = view;
    _model->show(nullptr);
    if (view != nullptr)
        connect(&DocumentTags::of(view->editor()), &DocumentTags::found, this, &KindsPanel::look);
    look();
}

// The tree as it was, of the tags as they are.
void KindsPanel::look() {
    if (!isVisible() || _view == nullptr || _model->isCurrent())
        return;
    DocumentTags& tags = DocumentTags::of(_view->editor());
    if (!tags.isCurrent())
        return tags.find(); // and comes here again
    std::vector<bool> open;
    for (int row = 0; row < _model->rowCount(); ++row)
        open.push_back(list().isExpanded(_model->index(row, 0)));
    const QModelIndex current = list().currentIndex();
    const std::pair<int, int> at = {current.parent().row(), current.row()};
    _isFilling = true;
    _wanted.clear();
    _model->show(&_view->editor());
    if (!filter().text().isEmpty()) {
        applyFilter();
    } else {
        for (size_t row = 0; row < open.size() && row < static_cast<size_t>(_model->rowCount()); ++row)
            list().setExpanded(_model->index(static_cast<int>(row), 0), open[row]);
        const QModelIndex around = at.first < 0 ? QModelIndex() : _model->index(at.first, 0);
        if (at.second >= 0)
            list().setCurrentIndex(_model->index(std::min(at.second, _model->rowCount(around) - 1), 0, around));
    }
    _isFilling = false;
    showCounts();
}

void KindsPanel::applyFilter() {
    _wanted.clear();
    _model->setFilter(filter().text(), _inside->isChecked());
    if (filter().text().isEmpty())
        _filtering.stop();
    else
        _filtering.start(0);
    showCounts();
}

void KindsPanel::filterMore() {
    if (!_model->filterMore())
        _filtering.stop();
    if (_model->shownCount() < 500) // so that what is found can be seen
        list().expandToDepth(0);
    showCounts();
}

void KindsPanel::showCounts() {
    words().setText(_filtering.isActive() ? tr("%1 tags, looking for more…").arg(_model->shownCount())
                                          : tr("%1 tags").arg(_model->shownCount()));
}

bool KindsPanel::isBusy() const {
    return _filtering.isActive() || _worker->isBusy() || (isVisible() && _view != nullptr && !_model->isCurrent());
}

// --- pictures and sizes ----------------------------------------------------------------------------------------------

void KindsPanel::wantLook(const TagRange& tag) {
    const auto isSame = [&](const TagRange& other) { return other.start == tag.start; };
    if (std::ranges::none_of(_wanted, isSame))
        _wanted.push_front(tag);
    if (_wanted.size() > mostWanted)
        _wanted.pop_back();
    QMetaObject::invokeMethod(this, &KindsPanel::nextLook, Qt::QueuedConnection); // This is asked while rows are drawn.
}

void KindsPanel::nextLook() {
    if (_worker->isBusy() || _wanted.empty() || _view == nullptr)
        return;
    if (!_model->isCurrent())
        return _wanted.clear();
    const TagRange tag = _wanted.front();
    _wanted.pop_front();
    PreviewRequest request = requestFor(DocumentTags::of(_view->editor()), tag);
    _lookHash = KindsModel::hashOf(request.element);
    _worker->start(std::move(request));
}

void KindsPanel::takeLook(const std::shared_ptr<TagPreview>& preview) {
    _model->setLook(_lookHash, {smallPicture(*preview), preview->bytes()});
    list().viewport()->update();
    nextLook();
}

// --- what the user does ----------------------------------------------------------------------------------------------

// In the view that is shown; the keyboard stays here.
void KindsPanel::showPlace(const QModelIndex& index) {
    const auto place = _model->placeOf(index);
    if (!_isFilling && place && _view != nullptr)
        _view->showPlace(*place);
}

bool KindsPanel::takeKey(QObject* watched, QKeyEvent& event) {
    if (watched != &list())
        return false;
    const auto place = _model->placeOf(list().currentIndex());
    if (!place)
        return false;
    if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        Q_EMIT editAsked(*place);
        return true;
    }
    const std::pair<bool, int> commands[] = {{event.key() == Qt::Key_Delete, CommandId::clear},
                                             {event.key() == Qt::Key_Insert, CommandId::insert},
                                             {event.matches(QKeySequence::Copy), CommandId::copy},
                                             {event.matches(QKeySequence::Cut), CommandId::cut},
                                             {event.matches(QKeySequence::Paste), CommandId::paste}};
    for (const auto& [isKey, id] : commands) {
        if (isKey) {
            Q_EMIT commandAsked(id, *place);
            return true;
        }
    }
    return false;
}

bool KindsPanel::eventFilter(QObject* watched, QEvent* event) {
    // Keys that are commands of the window mean the tree while it has the keyboard.
    if (event->type() == QEvent::ShortcutOverride && watched == &list()) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Cut) || key->matches(QKeySequence::Paste)) {
            event->accept();
            return true;
        }
    }
    return ListPanel::eventFilter(watched, event);
}

} // namespace zelk
