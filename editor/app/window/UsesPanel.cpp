#include "UsesPanel.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>

#include "DocumentTags.h"

namespace zelk {

/// A row for each place of the id.
class UsesModel : public QAbstractTableModel {
public:
    enum Column { row, tag, use, around, columns };

    using QAbstractTableModel::QAbstractTableModel;

    void show(DocumentView* view, std::shared_ptr<const CharacterIndex> characters, std::vector<CharacterId> places) {
        beginResetModel();
        _view = view;
        _characters = std::move(characters);
        _places = std::move(places);
        endResetModel();
    }
    const std::vector<CharacterId>& places() const { return _places; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(_places.size());
    }
    int columnCount(const QModelIndex& = {}) const override { return columns; }

    QVariant data(const QModelIndex& index, int role) const override {
        if (_view == nullptr || !index.isValid() || role != Qt::DisplayRole)
            return {};
        const CharacterId& place = _places[static_cast<size_t>(index.row())];
        const auto text = [](std::string_view bytes) {
            return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
        };
        switch (index.column()) {
        case row: return _view->rowOf(place.start);
        case tag: return text(place.element) + (place.isInBytes ? UsesPanel::tr(", kept as bytes") : QString());
        case use: return text(roleText(place.role));
        default: return where(place);
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        switch (section) {
        case row: return UsesPanel::tr("Row");
        case tag: return UsesPanel::tr("Element");
        case use: return UsesPanel::tr("Use");
        default: return UsesPanel::tr("In");
        }
    }

private:
    // The character whose tag has the id, or the sprite around that tag.
    QString where(const CharacterId& place) const {
        const CharacterId* own = _characters->ofTag(place.tag);
        if (own != nullptr && own->role == IdRole::defines && !isDefinition(place.role))
            return QStringLiteral("%1 %2").arg(
                QString::fromUtf8(own->element.data(), static_cast<qsizetype>(own->element.size())),
                QString::fromStdString(_characters->shown(own->id)));
        const CharacterId* sprite = place.list == CharacterIndex::noTag ? nullptr : _characters->ofTag(place.list);
        return sprite == nullptr
                   ? UsesPanel::tr("movie")
                   : UsesPanel::tr("sprite %1").arg(QString::fromStdString(_characters->shown(sprite->id)));
    }

    QPointer<DocumentView> _view;
    std::shared_ptr<const CharacterIndex> _characters;
    std::vector<CharacterId> _places;
};

UsesPanel::UsesPanel(QWidget* parent)
    : ListPanel(tr("Uses"), QStringLiteral("uses"), Place::bottom, parent), _model(new UsesModel(this)) {
    list().setModel(_model);
    list().setRootIsDecorated(false);
    list().setColumnWidth(UsesModel::row, 90);
    list().setColumnWidth(UsesModel::tag, 220);
    list().setColumnWidth(UsesModel::use, 160);
    filter().hide(); // they are few
    connect(&list(), &QTreeView::activated, this, &UsesPanel::choose);
}

void UsesPanel::showUses(DocumentView& view, uint16_t id) {
    showDocument(&view);
    _id = id;
    open();
    lookAgain();
}

void UsesPanel::showDocument(DocumentView* view) {
    if (view == _view)
        return;
    if (_view != nullptr)
        disconnect(&DocumentTags::of(_view->editor()), nullptr, this, nullptr);
    _view = view;
    _id = 0;
    words().clear();
    _model->show(nullptr, nullptr, {});
    if (view != nullptr)
        connect(&DocumentTags::of(view->editor()), &DocumentTags::found, this, [this] {
            if (isVisible() && _id != 0)
                lookAgain();
        });
}

void UsesPanel::lookAgain() {
    DocumentTags& tags = DocumentTags::of(_view->editor());
    if (!tags.isCurrent()) {
        words().setText(tr("Looking for the uses…"));
        return tags.find(); // and comes here again
    }
    const auto characters = tags.characters();
    const int current = list().currentIndex().row();
    _model->show(_view, characters, characters->of(_id));
    const auto count = _model->places().size();
    const QString id = QString::fromStdString(characters->shown(_id));
    words().setText(count == 1 ? tr("Character %1 stands at 1 place.").arg(id)
                               : tr("Character %1 stands at %2 places.").arg(id).arg(count));
    list().setCurrentIndex(_model->index(std::clamp(current, 0, std::max(0, _model->rowCount() - 1)), 0));
}

// Places of a text that has changed since are known again in a moment.
void UsesPanel::choose(const QModelIndex& index) {
    if (_view == nullptr || !index.isValid())
        return;
    DocumentTags& tags = DocumentTags::of(_view->editor());
    tags.whenCurrent([this, row = static_cast<size_t>(index.row())] {
        if (_view != nullptr && row < _model->places().size())
            _view->editor().jumpTo(_model->places()[row].start);
    });
}

} // namespace zelk
