#include "Waveform.h"

#include <algorithm>

namespace zelk {

namespace {

constexpr double columnWidth = 10, bandHeight = 2000; // twips
constexpr size_t mostColumns = 1000;
constexpr double loudest = 32768;

struct Range {
    int low, high;
};

Range rangeOf(std::span<const int16_t> samples, size_t first, size_t end, uint32_t channel, uint32_t channels) {
    Range range{INT16_MAX, INT16_MIN};
    for (size_t frame = first; frame < end; ++frame) {
        const int sample = samples[frame * channels + channel];
        range = {std::min(range.low, sample), std::max(range.high, sample)};
    }
    return range;
}

QPainterPath bandOf(std::span<const int16_t> samples, uint32_t channel, uint32_t channels) {
    const size_t frames = samples.size() / channels, columns = std::min(frames, mostColumns);
    const double middle = (channel + 0.5) * bandHeight;
    const auto height = [middle](int sample) { return middle - sample / loudest * bandHeight / 2; };
    QPainterPath path;
    for (size_t i = 0; i < columns; ++i) {
        const Range range = rangeOf(samples, i * frames / columns, (i + 1) * frames / columns, channel, channels);
        const double width = double(mostColumns) / static_cast<double>(columns) * columnWidth;
        // Silence is a line.
        path.addRect(QRectF(QPointF(static_cast<double>(i) * width, height(range.high) - 15),
                            QPointF(static_cast<double>(i + 1) * width, height(range.low) + 15)));
    }
    path.setFillRule(Qt::WindingFill);
    return path;
}

} // namespace

Drawing waveform(std::span<const int16_t> samples, uint32_t channels) {
    Drawing drawing;
    if (channels == 0 || samples.size() < channels)
        return drawing;
    Paint wave;
    wave.color = QColor(0x2A, 0x6D, 0xB8);
    for (uint32_t channel = 0; channel < channels; ++channel)
        drawing.add({bandOf(samples, channel, channels), wave, {}});
    return drawing;
}

} // namespace zelk
