// The main window under test, and the answers to its dialogs.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>

#include <deque>

#include "MainWindow.h"
#include "ProgressBarDialog.h"
#include "SwfUtils.h"

namespace zelk {

// Answers the modal dialogs that come up, one after the other.
class Answers : public QObject {
public:
    using Answer = std::function<void(QWidget&)>;

    Answers() {
        connect(&_timer, &QTimer::timeout, this, [this] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr || !dialog->isVisible() || qobject_cast<ProgressBarDialog*>(dialog) != nullptr)
                return;
            if (std::ranges::any_of(_answering, [=](const auto& other) { return other == dialog; }))
                return;
            if (_answers.empty() && !_forOthers) {
                const auto* box = qobject_cast<QMessageBox*>(dialog);
                ADD_FAILURE() << "unexpected dialog: " << dialog->windowTitle().toStdString() << " "
                              << (box == nullptr ? std::string() : box->text().toStdString());
                dialog->close();
                return;
            }
            const Answer answer = _answers.empty() ? _forOthers : _answers.front();
            if (!_answers.empty())
                _answers.pop_front();
            std::erase(_answering, nullptr);
            _answering.push_back(dialog);
            // Not from the timer's own event: a dialog that opens another one would wait for it forever.
            QMetaObject::invokeMethod(
                dialog,
                [this, answer, dialog] {
                    answer(*dialog);
                    std::erase(_answering, dialog);
                },
                Qt::QueuedConnection);
        });
        _timer.start(5);
    }
    ~Answers() override { EXPECT_TRUE(_answers.empty()) << "a dialog did not come up"; }

    void add(Answer answer) { _answers.push_back(std::move(answer)); }
    /// To every dialog that nothing was added for.
    void addForOthers(Answer answer) { _forOthers = std::move(answer); }
    bool isEmpty() const { return _answers.empty(); }
    void addText(const std::string& text) {
        add([text](QWidget& dialog) {
            QWidget* field = dialog.focusWidget();
            if (auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
                name->setText(QString::fromStdString(text)); // The list of completions would catch the Return key.
                field = name;
            } else {
                QTest::keyClicks(field, QString::fromStdString(text));
            }
            QTest::keyClick(field, Qt::Key_Return);
        });
    }
    void addButton(QMessageBox::StandardButton button, const QString& text) {
        add([button, text](QWidget& dialog) {
            auto* box = qobject_cast<QMessageBox*>(&dialog);
            ASSERT_NE(box, nullptr);
            EXPECT_TRUE(box->text().startsWith(text)) << box->text().toStdString();
            QTest::keyClick(box->button(button), Qt::Key_Space);
        });
    }

private:
    QTimer _timer;
    std::deque<Answer> _answers;
    Answer _forOthers;
    std::vector<QPointer<QWidget>> _answering;
};

class WindowTest : public testing::Test {
protected:
    static constexpr int patience = 60'000; // ms

    WindowTest() : settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat) {
        settings.setValue(QStringLiteral("Player/kind"), QStringLiteral("none"));
        open();
    }

    void open(const QString& stateFolder = {}) {
        window = std::make_unique<MainWindow>(settings, stateFolder);
        window->newDocument();
        window->show();
        QApplication::setActiveWindow(window.get());
        QApplication::processEvents();
    }
    // Lets events come from a loop, like that of the program, until something holds.
    static bool runUntil(const std::function<bool()>& holds) {
        QEventLoop loop;
        QTimer timer;
        QElapsedTimer clock;
        clock.start();
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (holds() || clock.elapsed() > patience)
                loop.quit();
        });
        timer.start(2);
        loop.exec();
        return holds();
    }
    std::string path(const std::string& name) const {
        return QDir::toNativeSeparators(folder.filePath(QString::fromStdString(name))).toStdString();
    }
    // Opens a file of this name and text.
    void openFile(const std::string& name, const std::string& text = "<Movie/>") {
        libswf::writeTextFile(path(name), text);
        ASSERT_TRUE(window->openFiles({QString::fromStdString(path(name))}));
    }
    void choose(int id) {
        window->actions().action(id)->trigger();
        QApplication::processEvents();
    }
    // Whether a label of the status bar has this text.
    bool statusShows(const QString& text) {
        return std::ranges::any_of(window->statusBar()->findChildren<QLabel*>(),
                                   [&](const QLabel* label) { return label->text() == text; });
    }
    static QAbstractButton& button(QWidget& parent, const QString& text) {
        for (auto* each : parent.findChildren<QAbstractButton*>()) {
            if (each->text().remove(u'&') == text)
                return *each;
        }
        throw std::runtime_error("no button " + text.toStdString());
    }
    DocumentView& view() { return *window->tabs().current(); }
    TextEditorView& editor() { return window->tabs().current()->editor(); }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QApplication::setActiveWindow(window.get()); // No window manager does it when a dialog has closed.
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target == nullptr ? window.get() : target, static_cast<Qt::Key>(key), modifiers);
        QApplication::processEvents();
    }
    void type(const std::string& text) { QTest::keyClicks(&editor(), QString::fromStdString(text)); }

    QTemporaryDir folder;
    QSettings settings;
    Answers answers;
    std::unique_ptr<MainWindow> window;
};

} // namespace zelk
