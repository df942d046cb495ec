#include "FrameMarks.h"

#include "SwfMovie.h"

namespace zelk {

namespace {

constexpr char mark[] = "\1frame "; // no movie traces it by chance

enum Code : unsigned { end = 0, showFrame = 1, doAction = 12, fileAttributes = 69 };

void add16(QByteArray& bytes, qsizetype value) {
    bytes.append(static_cast<char>(value)).append(static_cast<char>(value >> 8));
}

// DoAction: Push of the text, Trace, End.
void addMark(QByteArray& movie, int frame) {
    const QByteArray text = mark + QByteArray::number(frame);
    const qsizetype pushed = text.size() + 2; // its type before it, a NUL behind it
    add16(movie, doAction << 6 | (3 + pushed + 2));
    movie.append('\x96');
    add16(movie, pushed);
    movie.append('\0').append(text).append('\0').append("\x26\0", 2);
}

// The records of the main timeline from `at` on, with the marks. Empty for ActionScript 3.
QByteArray marked(const QByteArray& movie, qsizetype at) {
    QByteArray result = movie.left(at);
    int frame = 1;
    const auto number = [&movie](qsizetype place, int bytes) {
        qsizetype value = 0;
        for (int i = bytes; i-- > 0;)
            value = value << 8 | static_cast<uint8_t>(movie[place + i]);
        return value;
    };
    while (at + 2 <= movie.size()) {
        const auto head = number(at, 2);
        const auto code = static_cast<unsigned>(head >> 6);
        const bool isLong = (head & 63) == 63;
        if (code == end || (isLong && at + 6 > movie.size()))
            break;
        const qsizetype body = at + (isLong ? 6 : 2);
        const qsizetype next = std::min(body + (isLong ? number(at + 2, 4) : head & 63), movie.size());
        constexpr char usesActionScript3 = 0x08;
        if (code == fileAttributes && body < next && (movie[body] & usesActionScript3) != 0)
            return {};
        if (code == showFrame)
            addMark(result, frame++);
        result.append(movie.constData() + at, next - at);
        at = next;
    }
    result.append(movie.constData() + at, movie.size() - at);
    return result;
}

} // namespace

QByteArray withFrameMarks(const QString& fileName) {
    constexpr uint8_t firstVersion = 4; // that has Push and Trace
    constexpr qsizetype lengthAt = 4;
    libswf::SwfMovieSafe read;
    try {
        read.load(fileName.toStdString(), true);
    } catch (const std::exception&) {
        return {};
    }
    const libswf::SwfBytes body = read.body();
    if (read.version < firstVersion || body.size() < 32) // less holds no frame
        return {};
    const QByteArray movie(reinterpret_cast<const char*>(body.data()), static_cast<qsizetype>(body.size()));
    const int stageBits = 5 + 4 * (static_cast<uint8_t>(movie[8]) >> 3);
    QByteArray result = marked(movie, 12 + (stageBits + 7) / 8);
    if (result.isEmpty())
        return {};
    result[0] = 'F';
    for (int i = 0; i < 4; ++i)
        result[lengthAt + i] = static_cast<char>(result.size() >> (8 * i));
    return result;
}

std::optional<int> takeFrameMarks(QStringList& lines) {
    std::optional<int> frame;
    const QString start = QString::fromLatin1(mark);
    lines.removeIf([&](const QString& line) {
        bool isNumber = false;
        const int number = line.startsWith(start) ? line.mid(start.size()).toInt(&isNumber) : 0;
        if (isNumber)
            frame = number;
        return isNumber;
    });
    return frame;
}

} // namespace zelk
