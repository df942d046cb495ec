// What the window shows while no document is open.
#pragma once

#include <QHash>
#include <QListWidget>
#include <QWidget>

#include <string>
#include <vector>

#include "MoviePictures.h"

class QAction;
class QVBoxLayout;

namespace zelk {

/// The recent files with pictures, and the commands to begin with. Return or a click opens a file, Delete takes it out
/// of the list.
class StartPage : public QWidget {
    Q_OBJECT
public:
    /// A button for each of the actions.
    StartPage(const QList<QAction*>& actions, QWidget* parent);

    /// The latest first.
    void showFiles(const std::vector<std::string>& fileNames);
    QListWidget& files() { return *_files; }

Q_SIGNALS:
    void openAsked(const QString& fileName);
    void forgetAsked(const QString& fileName);

protected:
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QVBoxLayout* commandColumn(const QList<QAction*>& actions);
    QVBoxLayout* filesColumn();
    void setColors();
    QIcon iconOf(const QImage& picture) const;

    QListWidget* _files;
    QHash<QString, QImage> _known; // pictures by the file's name, size and time
    MoviePictures _pictures;
    bool _setsColors = false;
};

} // namespace zelk
