// Which program plays a movie.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "Exceptions.h"
#include "PlayerProcess.h"
#include "RequestQueue.h"

namespace {

using namespace zelk;

TEST(PlayerCommand, TheMovieIsOneArgument) {
    struct Case {
        const char* command;
        QStringList expected;
    };
    const QString movie = QStringLiteral("/tmp/a \"b\" %1 $(c).swf");
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    for (const Case& c : {Case{"", {}},
                          {"   ", {}},
                          {"play", {text("play"), movie}},
                          {"play %1", {text("play"), movie}},
                          {"play \"%1\" -x", {text("play"), movie, text("-x")}},
                          {"\"/opt/my player/p\" --file=%1", {text("/opt/my player/p"), text("--file=") + movie}},
                          {"play -t \"two words\"", {text("play"), text("-t"), text("two words"), movie}}})
        EXPECT_EQ(playerCommand(text(c.command), movie), c.expected) << c.command;
}

TEST(PlayerCommand, TheSettingsChooseThePlayer) {
    const QTemporaryDir folder;
    const QDir root(folder.path());
    const QString movie = root.filePath(QStringLiteral("a b.swf")), copy = root.filePath(QStringLiteral("copy"));
    QFile file(movie);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    QSettings settings(root.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    RequestQueue requests;
    PlayerProcess player(settings, requests);
    const auto play = [&](const QString& kind, const QString& command) {
        settings.setValue(QStringLiteral("Player/kind"), kind);
        settings.setValue(QStringLiteral("Player/command"), command);
        player.play(movie.toStdString(), 0, 0, [](const std::exception_ptr&) { ADD_FAILURE() << "nobody knows"; });
    };
    const QString command = QStringLiteral("command");
    EXPECT_THROW(play(QStringLiteral("none"), QStringLiteral("cp")), NoPlayerException);
    EXPECT_THROW(play(command, {}), NoPlayerException);
    EXPECT_THROW(play(command, QStringLiteral("/none/such %1")), NoPlayerException);
    play(command, QStringLiteral("cp %1 \"%2\"").arg(QStringLiteral("%1"), copy));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo(copy).size() == 7; }, 30'000));
}

} // namespace
