#include "bitmap_file.h"

#include <QHash>
#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace orma::art {
namespace {

constexpr int kColours = 256;
constexpr int kExact = 160;
constexpr int kHeaderBytes = 14 + 40 + 4 * kColours;

struct Counted {
    QRgb colour;
    std::int64_t pixels;
};
using Box = std::vector<Counted>;

int Part(QRgb colour, int channel) {
    return static_cast<int>(colour >> (8 * channel)) & 0xFF;
}

/// The channel in which a box reaches furthest, and how far, weighed with its pixels.
std::pair<int, std::int64_t> Widest(const Box& box) {
    std::pair<int, std::int64_t> widest{0, -1};
    std::int64_t pixels = 0;
    for (const Counted& counted : box)
        pixels += counted.pixels;
    for (int channel = 0; channel < 3; ++channel) {
        const auto [low, high] = std::minmax_element(box.begin(), box.end(), [&](auto& a, auto& b) {
            return Part(a.colour, channel) < Part(b.colour, channel);
        });
        const std::int64_t reach = Part(high->colour, channel) - Part(low->colour, channel);
        // The square: a visible error in a few pixels counts more than a small one in many.
        if (reach * reach * pixels > widest.second) widest = {channel, reach * reach * pixels};
    }
    return widest;
}

QRgb Mean(const Box& box) {
    std::int64_t sum[3] = {};
    std::int64_t pixels = 0;
    for (const Counted& counted : box) {
        pixels += counted.pixels;
        for (int channel = 0; channel < 3; ++channel) {
            sum[channel] += counted.pixels * Part(counted.colour, channel);
        }
    }
    const auto mean = [&](int channel) {
        return static_cast<int>((sum[channel] + pixels / 2) / pixels);
    };
    return qRgb(mean(2), mean(1), mean(0));
}

/// Splits `colours` into at most `count` boxes, always the one that reaches furthest.
std::vector<QRgb> MedianCut(Box colours, std::size_t count) {
    std::vector<Box> boxes;
    if (!colours.empty()) boxes.push_back(std::move(colours));
    while (boxes.size() < count) {
        const auto box = std::max_element(boxes.begin(), boxes.end(), [](auto& a, auto& b) {
            return Widest(a).second < Widest(b).second;
        });
        if (box == boxes.end() || box->size() < 2) break;
        const int channel = Widest(*box).first;
        std::sort(box->begin(), box->end(), [&](auto& a, auto& b) {
            return std::pair(Part(a.colour, channel), a.colour) <
                   std::pair(Part(b.colour, channel), b.colour);
        });
        const auto middle = box->begin() + static_cast<std::ptrdiff_t>(box->size() / 2);
        Box upper(middle, box->end());
        box->erase(middle, box->end());
        boxes.push_back(std::move(upper));
    }
    std::vector<QRgb> means;
    for (const Box& box : boxes)
        means.push_back(Mean(box));
    return means;
}

char Nearest(const QList<QRgb>& palette, QRgb colour) {
    int best = std::numeric_limits<int>::max();
    qsizetype index = 0;
    for (qsizetype i = 0; i < palette.size(); ++i) {
        int distance = 0;
        for (int channel = 0; channel < 3; ++channel) {
            const int apart = Part(palette[i], channel) - Part(colour, channel);
            distance += apart * apart;
        }
        if (distance < best) {
            best = distance;
            index = i;
        }
    }
    return static_cast<char>(index);
}

void Put(QByteArray& bytes, std::int64_t value, int size) {
    for (int i = 0; i < size; ++i)
        bytes.append(static_cast<char>(value >> (8 * i)));
}

void Count(const QImage& image, QHash<QRgb, std::int64_t>& counts) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y) & RGB_MASK];
    }
}

}  // namespace

QList<QRgb> ChooseColours(const QList<QImage>& images) {
    QHash<QRgb, std::int64_t> counts;
    for (const QImage& image : images)
        Count(image, counts);
    Box colours;
    for (auto it = counts.begin(); it != counts.end(); ++it)
        colours.push_back({it.key(), *it});
    std::sort(colours.begin(), colours.end(), [](const Counted& a, const Counted& b) {
        return std::pair(-a.pixels, a.colour) < std::pair(-b.pixels, b.colour);
    });
    QList<QRgb> palette;
    const std::size_t exact = colours.size() <= kColours ? colours.size() : kExact;
    for (std::size_t i = 0; i < exact; ++i)
        palette.append(colours[i].colour);
    colours.erase(colours.begin(), colours.begin() + static_cast<std::ptrdiff_t>(exact));
    for (const QRgb colour : MedianCut(std::move(colours), kColours - exact)) {
        palette.append(colour);
    }
    return palette;
}

QByteArray EncodeBitmap(const QImage& image, const QList<QRgb>& colours) {
    QHash<QRgb, std::int64_t> counts;
    Count(image, counts);
    QHash<QRgb, char> indices;
    for (auto it = counts.begin(); it != counts.end(); ++it) {
        indices.insert(it.key(), Nearest(colours, it.key()));
    }

    const std::int64_t rowBytes = (image.width() + 3) / 4 * 4;
    const std::int64_t pixelBytes = rowBytes * image.height();
    QByteArray bytes("BM");
    Put(bytes, kHeaderBytes + pixelBytes, 4);
    Put(bytes, 0, 4);
    Put(bytes, kHeaderBytes, 4);
    Put(bytes, 40, 4);
    Put(bytes, image.width(), 4);
    Put(bytes, image.height(), 4);
    Put(bytes, 1, 2);  // planes
    Put(bytes, 8, 2);  // bits a pixel
    Put(bytes, 0, 4);  // not compressed
    Put(bytes, pixelBytes, 4);
    Put(bytes, 0, 8);  // no resolution
    Put(bytes, kColours, 4);
    Put(bytes, 0, 4);
    for (qsizetype i = 0; i < kColours; ++i) {
        Put(bytes, i < colours.size() ? colours[i] & RGB_MASK : 0, 4);
    }
    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = 0; x < image.width(); ++x) {
            bytes.append(indices.value(image.pixel(x, y) & RGB_MASK));
        }
        bytes.append(static_cast<qsizetype>(rowBytes - image.width()), '\0');
    }
    return bytes;
}

}  // namespace orma::art
