// Files that reach a running window from outside, whatever is open in it.
#include <QLocalSocket>

#include <random>
#include <thread>

#include "SingleInstance.h"
#include "WindowFixture.h"

namespace {

using namespace zelk;

constexpr const char* movie = R"(<Movie SwfVersion="8" Width="550" Height="400" FrameRate="12">
    <DefineBinaryData Id="1" Reserved="0"><data>AAEC</data></DefineBinaryData>
    <ShowFrame />
</Movie>
)";

class HandOverTest : public WindowTest {
protected:
    HandOverTest() {
        qputenv("HOME", folder.path().toUtf8()); // Starts of one user find each other.
        first = std::make_unique<SingleInstance>();
        EXPECT_FALSE(first->handOver({}));
        join();
    }
    ~HandOverTest() override { qputenv("HOME", home); }

    void join() {
        QObject::connect(first.get(), &SingleInstance::filesReceived, window.get(), &MainWindow::receiveFiles);
    }
    // Does something in that loop, and returns when it is done and nothing waits any more.
    void inLoop(const std::function<void()>& work) {
        bool isDone = false;
        QTimer::singleShot(0, window.get(), [&] {
            work();
            window->requests().add(window.get(), [&isDone] { isDone = true; });
        });
        EXPECT_TRUE(runUntil([&isDone] { return isDone; }));
    }
    // A second start, by a user who stands in the folder.
    void start(const QStringList& names) {
        QProcess second;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        second.setProcessEnvironment(environment);
        second.setProcessChannelMode(QProcess::ForwardedChannels);
        second.setWorkingDirectory(folder.path());
        second.start(QStringLiteral(ZELK_PROGRAM), names);
        EXPECT_TRUE(runUntil([&second] { return second.state() == QProcess::NotRunning; })) << "it waits";
        EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(second.exitCode(), 0);
    }
    void drop(const QStringList& names) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& name : names)
            urls.append(QUrl::fromLocalFile(folder.filePath(name)));
        data.setUrls(urls);
        data.setText(names.join(u'\n'));
        QWidget* target = editor().findChild<QWidget*>(QStringLiteral("qt_scrollarea_viewport"));
        ASSERT_NE(target, nullptr);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &event);
    }
    bool isCurrent(const std::string& name) {
        const DocumentView* view = window->tabs().current();
        return view != nullptr && view->document().fileName == path(name);
    }

    const QByteArray home = qgetenv("HOME");
    std::unique_ptr<SingleInstance> first;
};

TEST_F(HandOverTest, FilesOfEveryNameOpenInTheFirstWindow) {
    constexpr bool takesLines = QOperatingSystemVersion::currentType() != QOperatingSystemVersion::Windows;
    std::vector<std::string> names = {"\u041F\u0440\u0438\u0432\u0435\u0442.xml",
                                      takesLines ? "a b\u00A0& \U0001F39E\n.xml" : "a b\u00A0& \U0001F39E.xml"};
    names.emplace_back(230, 'n');
    names.back() += ".xml";
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        libswf::writeTextFile(path(name), "<Movie/>");
        start({QString::fromStdString(name)});
        EXPECT_TRUE(runUntil([&] { return isCurrent(name); }));
        EXPECT_EQ(editor().text(), "<Movie/>");
    }
    EXPECT_EQ(window->tabs().count(), 3);
    libswf::writeTextFile(path("both.xml"), "<Movie/>");
    start({QString::fromStdString(names[0]), QStringLiteral("both.xml")});
    EXPECT_TRUE(runUntil([&] { return isCurrent("both.xml"); }));
    EXPECT_EQ(window->tabs().count(), 4);
}

TEST_F(HandOverTest, FilesThatCannotBeReadAreToldInTheFirstWindow) {
    libswf::writeTextFile(path("broken.swf"), "FWS");
    libswf::writeTextFile(path("whole.xml"), "<Movie/>");
    for (const char* name : {"broken.swf", "gone.swf", "\u043D\u0435\u0442.zelk"}) {
        SCOPED_TRACE(name);
        bool wasTold = false;
        answers.add([&](QWidget& dialog) {
            wasTold = true;
            EXPECT_EQ(dynamic_cast<QMessageBox&>(dialog).text().toStdString(), "Unable to open " + path(name));
            runUntil([clock = QDeadlineTimer(50)] { return clock.hasExpired(); }); // The other start goes meanwhile.
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        start({QString::fromUtf8(name), QStringLiteral("whole.xml")});
        EXPECT_TRUE(runUntil([&] { return wasTold && isCurrent("whole.xml"); })) << "the others still open";
        inLoop([this] { choose(CommandId::close); });
    }
    EXPECT_EQ(window->tabs().count(), 0);
}

TEST_F(HandOverTest, NothingOpensWhileSomethingModalIsOpen) {
    struct Modal {
        const char* name;
        std::function<void()> open;
        std::function<void(QWidget&)> end;
        std::function<void(QWidget&)> then = {}; // ends what comes up after it
    };
    const auto command = [this](int id) { return [this, id] { choose(id); }; };
    const auto key = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        return [key, modifiers](QWidget& dialog) {
            QTest::keyClick(dialog.focusWidget() == nullptr ? &dialog : dialog.focusWidget(), key, modifiers);
        };
    };
    const Modal modals[] = {
        {"a dialog that changes the text", command(CommandId::movieSettings),
         [](QWidget& dialog) {
             dialog.findChild<QLineEdit*>()->setText(QStringLiteral("9"));
             QTest::keyClick(&dialog, Qt::Key_Return);
         }},
        {"a dialog behind another",
         [this] {
             choose(CommandId::tagList);
             QTest::keyClick(&window->tabs().current()->list().tree(), Qt::Key_Insert);
         },
         key(Qt::Key_Return), key(Qt::Key_Return, Qt::ControlModifier)},
        {"a file dialog", command(CommandId::saveAs),
         [this](QWidget& dialog) {
             dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
                 ->setText(folder.filePath(QStringLiteral("s.xml")));
             QTest::keyClick(&dialog, Qt::Key_Return);
         }},
        {"a message",
         [this] {
             editor().setText("<Movie/>"); // What is wrong with a movie is listed without a dialog.
             choose(CommandId::checkXml);
         },
         key(Qt::Key_Return)},
        {"a question",
         [this] {
             type("x");
             choose(CommandId::close);
         },
         key(Qt::Key_Escape)},
    };
    libswf::writeTextFile(path("handed.xml"), "<Movie/>");
    libswf::writeTextFile(path("dropped.xml"), "<Movie/>");
    for (const Modal& modal : modals) {
        SCOPED_TRACE(modal.name);
        open();
        join();
        editor().setText(movie); // and thus a document that would make room for the file
        const QPointer<DocumentView> view = window->tabs().current();
        answers.add([&](QWidget& dialog) {
            drop({QStringLiteral("dropped.xml")});
            start({QStringLiteral("handed.xml")});
            runUntil([clock = QDeadlineTimer(100)] { return clock.hasExpired(); });
            ASSERT_EQ(window->tabs().count(), 1);
            ASSERT_EQ(window->tabs().current(), view);
            modal.end(dialog);
        });
        if (modal.then)
            answers.add(modal.then);
        inLoop(modal.open);
        EXPECT_TRUE(isCurrent("handed.xml"));
        EXPECT_GE(window->tabs().count(), 2);
        EXPECT_TRUE(answers.isEmpty());
    }
}

TEST_F(HandOverTest, NothingOpensWhileAMenuIsOpen) {
    libswf::writeTextFile(path("handed.xml"), "<Movie/>");
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
        QWidget* menu = QApplication::activePopupWidget();
        if (menu == nullptr)
            return;
        timer.stop();
        start({QStringLiteral("handed.xml")});
        runUntil([clock = QDeadlineTimer(100)] { return clock.hasExpired(); });
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Untitled.swf - Zelk"));
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    timer.start(5);
    inLoop([this] { Q_EMIT window->tabs().menuAsked({5, 5}); });
    EXPECT_TRUE(isCurrent("handed.xml"));
}

TEST_F(HandOverTest, NothingOpensOrClosesDuringAJob) {
    libswf::writeTextFile(path("handed.xml"), "<Movie/>");
    struct WaitParams : ThreadParams {
        std::atomic<bool> mayEnd = false;
    } params;
    QTimer::singleShot(30, window.get(), [&] { // before the dialog of the job appears, and on until after
        start({QStringLiteral("handed.xml")});
        EXPECT_FALSE(window->close());
        runUntil([clock = QDeadlineTimer(400)] { return clock.hasExpired(); });
        EXPECT_EQ(window->tabs().count(), 1);
        EXPECT_TRUE(window->isVisible());
        params.mayEnd = true;
    });
    inLoop([&] {
        ProgressBarDialog(window.get(), QStringLiteral("Working"), params).run([](ThreadParams& all) {
            while (!static_cast<WaitParams&>(all).mayEnd)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        });
        EXPECT_TRUE(window->isVisible());
    });
    EXPECT_FALSE(window->isVisible()) << "it was asked to close";
}

TEST_F(HandOverTest, FilesThatComeWhileTheWindowIsAskedToCloseKeepItOpen) {
    libswf::writeTextFile(path("handed.xml"), "<Movie/>");
    type("x");
    answers.add([&](QWidget& dialog) {
        start({QStringLiteral("handed.xml")});
        QTest::keyClick(dynamic_cast<QMessageBox&>(dialog).button(QMessageBox::No), Qt::Key_Space);
    });
    inLoop([this] { EXPECT_FALSE(window->close()); });
    EXPECT_TRUE(isCurrent("handed.xml"));
    EXPECT_EQ(window->tabs().count(), 1) << "what was given up is gone";
    inLoop([this] { EXPECT_TRUE(window->close()); });
}

TEST_F(HandOverTest, OtherProgramsOnTheSocketDoNoHarm) {
    libswf::writeTextFile(path("a.xml"), "<Movie/>");
    const QString name = QStringLiteral("orvane-zelk-") + QDir::home().dirName();
    const QByteArray messages[] = {"", "x", QByteArray("\xFF\xFF\xFF\xFE", 4),
                                   QByteArray("\xFF\xFF\xFF\xFE", 4) + "abc",
                                   QByteArray("\x7F\xFF\xFF\xFF", 4) + QByteArray(17 << 20, 'x')};
    for (const QByteArray& message : messages) {
        QLocalSocket socket;
        socket.connectToServer(name);
        ASSERT_TRUE(runUntil([&] { return socket.state() == QLocalSocket::ConnectedState; }));
        socket.write(message);
        runUntil([&] { return socket.bytesToWrite() == 0 || socket.state() != QLocalSocket::ConnectedState; });
    }
    start({QStringLiteral("a.xml")});
    EXPECT_TRUE(runUntil([&] { return isCurrent("a.xml"); }));
    EXPECT_EQ(window->tabs().count(), 1);
}

TEST_F(HandOverTest, RequestsKeepTheirOrderAndGoWithTheirOwner) {
    RequestQueue requests;
    QObject owner;
    auto gone = std::make_unique<QObject>();
    std::string done;
    const auto request = [&done](char c) { return [&done, c] { done += c; }; };
    requests.add(&owner, request('a'));
    requests.addLatest(&owner, QStringLiteral("x"), request('b'));
    requests.add(gone.get(), request('c'));
    requests.addLatest(gone.get(), QStringLiteral("x"), request('d'));
    requests.addLatest(&owner, QStringLiteral("y"), [&] {
        done += 'e';
        requests.addLatest(&owner, QStringLiteral("y"), request('h'));
        runUntil([clock = QDeadlineTimer(100)] { return clock.hasExpired(); });
        done += 'f';
    });
    requests.addLatest(&owner, QStringLiteral("x"), request('g'));
    gone.reset();
    EXPECT_EQ(done, "");
    EXPECT_TRUE(runUntil([&done] { return done.ends_with('h'); }));
    EXPECT_EQ(done, "agefh");
}

// A user with little patience and other programs that hand over at the same time.
TEST_F(HandOverTest, AnythingMayComeAtAnyTime) {
    const QStringList files = {QStringLiteral("a.xml"), QStringLiteral("\u0431.xml"), QStringLiteral("broken.swf"),
                               QStringLiteral("gone.xml"), QStringLiteral("c.xml")};
    for (const QString& name : files) {
        if (name != u"gone.xml")
            libswf::writeTextFile(path(name.toStdString()), name == u"broken.swf" ? "FWS" : movie);
    }
    constexpr int commands[] = {CommandId::movieSettings, CommandId::fileNew,      CommandId::close,
                                CommandId::insertTag,     CommandId::insertStruct, CommandId::saveAs,
                                CommandId::fileOpen,      CommandId::gotoLine,     CommandId::checkXml,
                                CommandId::play,          CommandId::tagList,      CommandId::movieXml,
                                CommandId::closeOthers,   CommandId::closeAll,     CommandId::replacePayload,
                                CommandId::insert,        CommandId::about,        CommandId::undo};
    std::mt19937 random(5);
    const auto pick = [&random](size_t count) { return random() % count; };
    answers.addForOthers([&](QWidget& dialog) {
        runUntil([clock = QDeadlineTimer(static_cast<qint64>(pick(12)))] { return clock.hasExpired(); });
        auto* box = qobject_cast<QMessageBox*>(&dialog);
        if (box != nullptr && pick(3) != 0)
            QTest::mouseClick(
                box->buttons().at(static_cast<qsizetype>(pick(static_cast<size_t>(box->buttons().size())))),
                Qt::LeftButton);
        else
            QTest::keyClick(&dialog, pick(2) != 0 ? Qt::Key_Return : Qt::Key_Escape);
    });
    std::atomic<int> left = 200, taken = 0;
    std::jthread others([&] {
        std::mt19937 order(9);
        for (; left > 0; --left) {
            QStringList paths;
            for (auto count = order() % 3; count > 0; --count)
                paths.append(
                    folder.filePath(files[static_cast<qsizetype>(order() % static_cast<size_t>(files.size()))]));
            taken += SingleInstance().handOver(paths) ? 1 : 0;
            std::this_thread::sleep_for(std::chrono::milliseconds(order() % 40));
        }
    });
    while (left > 0) {
        inLoop([&] {
            if (pick(4) == 0 && window->tabs().current() != nullptr && !window->tabs().current()->showsList())
                type("x");
            choose(commands[pick(std::size(commands))]);
        });
    }
    others.join();
    EXPECT_EQ(taken, 200);
    start({files.last()});
    EXPECT_TRUE(runUntil([&] { return isCurrent("c.xml"); })) << "it still lives";
}

} // namespace
