#include "DocumentTabsView.h"

#include <QMouseEvent>
#include <QTabBar>

namespace zelk {

DocumentTabsView::DocumentTabsView(QWidget* parent) : QTabWidget(parent) {
    setDocumentMode(true);
    setAccessibleName(tr("Documents"));
    tabBar()->setAccessibleName(tr("Documents"));
    setMovable(true);
    setTabsClosable(true);
    tabBar()->setContextMenuPolicy(Qt::CustomContextMenu);
    tabBar()->installEventFilter(this);
    connect(this, &QTabWidget::tabCloseRequested, this, [this](int index) { Q_EMIT closeAsked(at(index)); });
    connect(this, &QTabWidget::currentChanged, this, &DocumentTabsView::stateChanged);
    connect(tabBar(), &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        const int index = tabBar()->tabAt(position);
        if (index < 0)
            return;
        setCurrentIndex(index);
        Q_EMIT menuAsked(tabBar()->mapToGlobal(position));
    });
}

void DocumentTabsView::add(DocumentView* view) {
    setCurrentIndex(addTab(view, QString()));
    showTitle(view);
    connect(view, &DocumentView::stateChanged, this, [this, view] {
        showTitle(view);
        if (view == current())
            Q_EMIT stateChanged();
    });
    view->setFocus();
}

void DocumentTabsView::remove(DocumentView* view) {
    removeTab(indexOf(view));
    view->deleteLater();
}

DocumentView* DocumentTabsView::current() const { return qobject_cast<DocumentView*>(currentWidget()); }

DocumentView* DocumentTabsView::at(int index) const { return qobject_cast<DocumentView*>(widget(index)); }

std::vector<DocumentView*> DocumentTabsView::all() const {
    std::vector<DocumentView*> views;
    for (int i = 0; i < count(); ++i)
        views.push_back(at(i));
    return views;
}

void DocumentTabsView::step(int by) {
    if (count() > 0)
        setCurrentIndex((currentIndex() + by + count()) % count());
}

void DocumentTabsView::showTitle(DocumentView* view) {
    const int index = indexOf(view);
    const QString title = view->title().replace(u'&', QStringLiteral("&&"));
    if (tabText(index) != title)
        setTabText(index, title);
    setTabToolTip(index, view->fileName());
}

bool DocumentTabsView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == tabBar() && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const int index = tabBar()->tabAt(mouse->position().toPoint());
        if (mouse->button() == Qt::MiddleButton && index >= 0) {
            Q_EMIT closeAsked(at(index));
            return true;
        }
    }
    return QTabWidget::eventFilter(watched, event);
}

} // namespace zelk
