// A movie's tags by kind as rows, with the frames of sprites and the classes of code below them.
#pragma once

#include <QAbstractItemModel>
#include <QImage>
#include <QPointer>

#include <unordered_map>

#include "ByteSearch.h"
#include "DocumentTags.h"
#include "TextEditorView.h"

namespace zelk {

class KindsModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Column { name, bytes, columns };
    static constexpr int pictureSize = 24, rowHeight = 28; ///< pixels

    using QAbstractItemModel::QAbstractItemModel;

    /// The tags of a view's text as it is now, which are known. Null for none.
    void show(TextEditorView* editor);
    /// Rows become those whose start tag, or all of it, has this text, or whose name has. Begins with none;
    /// `filterMore` adds them.
    void setFilter(const QString& text, bool looksInside);
    /// Goes on for some milliseconds. False when all tags were looked at.
    bool filterMore();
    bool isCurrent() const;
    size_t shownCount() const;

    /// Where the row's element stands; none for a kind.
    std::optional<size_t> placeOf(const QModelIndex& index) const;
    /// The tag around that.
    std::optional<TagRange> tagOf(const QModelIndex& index) const;

    /// What is shown of a tag, for all tags with these bytes.
    struct Look {
        QImage picture; ///< may be null
        int64_t bytes = -1;
    };
    static size_t hashOf(std::string_view element);
    void setLook(size_t hash, Look look);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    /// A row is on the screen whose look is not known yet.
    void lookWanted(zelk::TagRange tag);

private:
    struct Kind {
        TagKind kind;
        std::vector<uint32_t> tags;
    };
    struct Row {
        size_t kind = 0;
        std::optional<uint32_t> tag; // none for a kind
        std::optional<size_t> part;
    };

    Row rowOf(const QModelIndex& index) const;
    std::string_view elementOf(uint32_t tag) const;
    bool matches(uint32_t tag, const ByteSearch& search) const;
    QString nameOf(const Row& row) const;
    const Look* lookOf(uint32_t tag) const;
    void begin();

    QPointer<TextEditorView> _editor;
    DocumentTags::MapPointer _map;
    std::vector<Kind> _kinds;
    QString _filter;
    bool _looksInside = false;
    size_t _nextKind = tagKinds, _nextTag = 0; // that the filter comes to
    std::unordered_map<size_t, Look> _looks;
};

} // namespace zelk
