// A movie's tags by kind: shapes, sprites with their frames, scripts with their classes and so on.
#pragma once

#include <QPointer>
#include <QTimer>

#include <deque>

#include "DocumentView.h"
#include "ListPanel.h"
#include "PreviewWorker.h"
#include "TagMap.h"

class QCheckBox;

namespace zelk {

class KindsModel;

/// Stands beside both views of a document and shows in them what is chosen in it. Costs nothing while it cannot be
/// seen.
class KindsPanel : public ListPanel {
    Q_OBJECT
public:
    explicit KindsPanel(QWidget* parent = nullptr);

    /// Null for no document.
    void showDocument(DocumentView* view);
    QCheckBox& inside() { return *_inside; }
    /// Something is still to be looked for.
    bool isBusy() const;

Q_SIGNALS:
    /// Please carry out this command of the table on the current tag, which the list of the document shows then.
    void commandAsked(int id, size_t place);
    void menuAsked(const QPoint& globalPos, size_t place);
    void editAsked(size_t place);

protected:
    void look() override;
    bool takeKey(QObject* watched, QKeyEvent& event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setUpTree();
    void applyFilter();
    void filterMore();
    void showPlace(const QModelIndex& index);
    void wantLook(const TagRange& tag);
    void nextLook();
    void takeLook(const std::shared_ptr<TagPreview>& preview);
    void showCounts();

    QPointer<DocumentView> _view;
    KindsModel* _model;
    QCheckBox* _inside;
    QTimer _filtering;
    PreviewWorker* _worker;
    std::deque<TagRange> _wanted; // on the screen, the last one first
    size_t _lookHash = 0;         // of the one that is being worked on
    bool _isFilling = false;
};

} // namespace zelk
