// Which program plays a movie.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "Exceptions.h"
#include "Messages.h"
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

void writeProgram(const QString& name, const QByteArray& script) {
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("#!/bin/sh\n" + script + "\n");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// What a player that cannot play writes and returns, and what the user is told of it.
TEST(PlayerCommand, TheReasonComesFromThePlayer) {
    const struct {
        const char* script;
        MessageCode code;
        const char* reason;
    } cases[] = {
        {"echo 'No movie.'; exit 3", MessageCode::cannotPlay, "No movie."},
        {"echo 'No package.'; exit 4", MessageCode::noPlayer, "No package."},
        {"echo 'a library is missing' >&2; exit 127", MessageCode::noPlayer, "a library is missing"},
        {"echo '[7:7:1125/2:ERROR:a.cc(90)] As root.' >&2; exit 1", MessageCode::cannotPlay, "As root."},
        {"printf 'first\n[7:FATAL] No GPU.\n#0 0x7f\n\n' >&2; kill -ABRT $$", MessageCode::cannotPlay,
         "The player broke down. No GPU."},
        {"kill -SEGV $$", MessageCode::cannotPlay, "The player broke down."},
        {"seq 2000 >&2; echo last >&2; exit 1", MessageCode::cannotPlay, "last"},
    };
    const QTemporaryDir folder;
    const QString program = folder.filePath(QStringLiteral("player"));
    QSettings settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    RequestQueue requests;
    PlayerProcess player(settings, requests, program);
    const auto play = [&](const char* script) {
        writeProgram(program, script);
        std::optional<std::exception_ptr> result;
        player.play({"movie.swf"}, [&result](const std::exception_ptr& failure) { result = failure; });
        EXPECT_TRUE(QTest::qWaitFor([&result] { return result.has_value(); }, 30'000));
        return result.value_or(nullptr);
    };
    EXPECT_THROW(player.play({"movie.swf"}, {}), NoPlayerException) << "there is no such program yet";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.script);
        const std::exception_ptr failure = play(c.script);
        ASSERT_TRUE(failure);
        try {
            std::rethrow_exception(failure);
        } catch (...) {
            EXPECT_EQ(describeFailure().message, message(c.code));
            EXPECT_EQ(describeFailure().reason, c.reason);
        }
    }
    EXPECT_FALSE(play("echo 'only a warning' >&2; exit 0"));
    settings.setValue(QStringLiteral("Player/kind"), QStringLiteral("command"));
    for (const char* command : {"", "/none/such %1"}) {
        settings.setValue(QStringLiteral("Player/command"), QString::fromUtf8(command));
        EXPECT_THROW(player.play({"movie.swf"}, {}), NoPlayerException) << command;
    }
}

// A script for a player: it writes down each start, and plays what it is told of until the movie "last".
TEST(PlayerCommand, OneWindowPlaysOneMovieAfterTheOther) {
    const QTemporaryDir folder;
    const QString program = folder.filePath(QStringLiteral("player")),
                  starts = folder.filePath(QStringLiteral("starts"));
    writeProgram(program, R"(echo "$*" >>)" + starts.toUtf8() + R"(
while read -r line; do
    [ "$line" = '["last","t"]' ] && exit 0
    name=${line#??}
    echo "plays ${name%%\"*}"
done)");
    QSettings settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    RequestQueue requests;
    PlayerProcess player(settings, requests, program);
    std::string ended;
    const auto play = [&](const char* movie, bool isApart = false) {
        player.play({movie, "t", 0, 0, isApart},
                    [&ended, movie](const std::exception_ptr& failure) { ended += failure ? "failed " : movie; });
    };
    const auto wait = [&](const char* movies) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return ended == movies; }, 30'000)) << ended;
    };
    play("a");
    play("b");
    wait("a");
    play("apart", true);
    play("c");
    play("d"); // c need not have begun
    EXPECT_TRUE(QTest::qWaitFor([&] { return ended == "abc" || ended == "acb"; }, 30'000)) << ended;
    play("last"); // the window is being closed: another one plays it
    wait((ended + "d").c_str());
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(starts).size() > 110; }, 30'000));
    QFile file(starts);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(),
              "--width 0 --height 0 --movie-name t --follow -- a\n--width 0 --height 0 --movie-name t -- apart\n"
              "--width 0 --height 0 --movie-name t --follow -- last\n");
}

} // namespace
