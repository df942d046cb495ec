#include "FrameMarks.h"

#include "SwfMovie.h"

namespace zelk {

using namespace libswf;

namespace {

constexpr char mark[] = "\1frame "; // no movie traces it by chance

void add16(QByteArray& bytes, qsizetype value) {
    bytes.append(static_cast<char>(value)).append(static_cast<char>(value >> 8));
}

// DoAction: Push of the text, Trace, End.
void addMark(QByteArray& movie, int frame) {
    const QByteArray text = mark + QByteArray::number(frame);
    const qsizetype pushed = text.size() + 2; // its type before it, a NUL behind it
    add16(movie, SwfTagCode::DoAction << 6 | (3 + pushed + 2));
    movie.append('\x96');
    add16(movie, pushed);
    movie.append('\0').append(text).append('\0').append("\x26\0", 2);
}

// With the marks in the main timeline, whose first record the stream is at. Empty for ActionScript 3.
QByteArray marked(const QByteArray& movie, SwfIStream& stream) {
    const auto size = static_cast<uint64_t>(movie.size());
    QByteArray result;
    qsizetype taken = 0;
    int frame = 1;
    SwfTagHeader record;
    while (readTagHeader(stream, size, record) && record.code != SwfTagCode::End) {
        constexpr char usesActionScript3 = 0x08;
        const auto start = static_cast<qsizetype>(record.start), body = static_cast<qsizetype>(record.body);
        if (record.code == SwfTagCode::FileAttributes && body < movie.size() && (movie[body] & usesActionScript3) != 0)
            return {};
        if (record.code == SwfTagCode::ShowFrame) {
            result.append(movie.constData() + taken, start - taken);
            taken = start;
            addMark(result, frame++);
        }
        stream.seek(std::min(record.body + record.length, size));
    }
    return result.append(movie.constData() + taken, movie.size() - taken);
}

} // namespace

QByteArray withFrameMarks(const QString& fileName) {
    constexpr uint8_t firstVersion = 4; // that has Push and Trace
    constexpr qsizetype lengthAt = 4;
    SwfMovieSafe read;
    try {
        read.load(fileName.toStdString(), true);
    } catch (const std::exception&) {
        return {};
    }
    const SwfBytes body = read.body();
    if (read.version < firstVersion || body.size() < 32) // less holds no frame
        return {};
    const QByteArray movie(reinterpret_cast<const char*>(body.data()), static_cast<qsizetype>(body.size()));
    constexpr uint64_t stageAt = 8, rateAndCount = 4;
    SwfIStream stream(body.data(), body.size());
    stream.seek(stageAt);
    SwfRect stage;
    stage.read(stream);
    stream.skip(rateAndCount);
    QByteArray result = marked(movie, stream);
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
