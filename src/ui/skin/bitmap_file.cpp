#include "ui/skin/bitmap_file.h"

#include <algorithm>
#include <span>

namespace orma {
namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kInfoHeader = 40;
constexpr std::size_t kPaletteEntry = 4;  // blue, green, red, unused
constexpr std::uint32_t kUncompressed = 0;

constexpr std::size_t kColours = 256;

/// What the headers say.
struct Head {
    std::size_t rows = 0;     // place in the file
    std::size_t palette = 0;  // place in the file
    std::uint32_t bits = 0;   // of one pixel
    std::uint32_t colours = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    bool topDown = false;

    [[nodiscard]] std::int64_t RowBytes() const { return (width * bits + 31) / 32 * 4; }
};

Head ReadHead(ByteSpan file) {
    const std::uint8_t* const info = file.data() + kFileHeader;
    const auto height = LoadLe<std::int32_t>(info + 8);
    return {.rows = LoadLe<std::uint32_t>(file.data() + 10),
            .palette = kFileHeader + LoadLe<std::uint32_t>(info),
            .bits = LoadLe<std::uint16_t>(info + 14),
            .colours = LoadLe<std::uint32_t>(info + 32),
            .width = LoadLe<std::int32_t>(info + 4),
            .height = height < 0 ? -std::int64_t{height} : std::int64_t{height},
            .topDown = height < 0};
}

/// Is it a form that is known, and are all its rows in the file?
bool IsWhole(const Head& head, std::size_t fileBytes) {
    if (head.palette < kFileHeader + kInfoHeader || head.palette > fileBytes) return false;
    if (head.rows > fileBytes || head.width <= 0 || head.height <= 0) return false;
    if (head.width > kLargestPicture / head.height) return false;
    return head.RowBytes() * head.height <= static_cast<std::int64_t>(fileBytes - head.rows);
}

/// The colours that the file holds; the others are black.
std::vector<Pixel> ReadPalette(ByteSpan file, const Head& head) {
    const std::size_t possible = std::size_t{1} << head.bits;
    std::size_t count = head.colours == 0 ? possible : head.colours;
    count = std::min({count, possible, (file.size() - head.palette) / kPaletteEntry});
    std::vector<Pixel> palette(kColours);
    for (std::size_t i = 0; i < count; ++i)
        palette[i] = LoadLe<Pixel>(file.data() + head.palette + kPaletteEntry * i) & 0xFFFFFF;
    return palette;
}

/// Unpacks indices of `bits` bits, the leftmost pixel in the highest ones.
void UnpackIndices(const std::uint8_t* row, std::uint32_t bits, std::span<std::uint8_t> indices) {
    const std::uint32_t mask = (1U << bits) - 1;
    for (std::size_t x = 0; x < indices.size(); ++x) {
        const std::size_t end = (x + 1) * bits;  // in bits, behind this pixel
        indices[x] = static_cast<std::uint8_t>((row[(end - 1) / 8] >> ((8 - end % 8) % 8)) & mask);
    }
}

void UnpackColours(const std::uint8_t* row, std::size_t bytes, std::span<Pixel> pixels) {
    for (Pixel& pixel : pixels) {
        pixel = static_cast<Pixel>(row[0] | row[1] << 8 | row[2] << 16);
        row += bytes;
    }
}

}  // namespace

Picture DecodeBitmap(ByteSpan file) {
    if (file.size() < kFileHeader + kInfoHeader || file[0] != 'B' || file[1] != 'M') return {};
    if (LoadLe<std::uint32_t>(file.data() + kFileHeader + 16) != kUncompressed) return {};
    const Head head = ReadHead(file);
    const bool indexed = head.bits == 1 || head.bits == 4 || head.bits == 8;
    if (!indexed && head.bits != 24 && head.bits != 32) return {};
    if (!IsWhole(head, file.size())) return {};

    Picture picture{static_cast<int>(head.width), static_cast<int>(head.height)};
    const auto size = static_cast<std::size_t>(head.width * head.height);
    const auto width = static_cast<std::size_t>(head.width);
    if (indexed) {
        picture.palette = ReadPalette(file, head);
        picture.indices.resize(size);
    } else {
        picture.pixels.resize(size);
    }
    for (int y = 0; y < picture.height; ++y) {
        const int rowInFile = head.topDown ? y : picture.height - 1 - y;
        const std::uint8_t* const row = file.data() + head.rows + head.RowBytes() * rowInFile;
        const std::size_t place = picture.PlaceOf(0, y);
        if (indexed) {
            UnpackIndices(row, head.bits, std::span(picture.indices).subspan(place, width));
        } else {
            UnpackColours(row, head.bits / 8, std::span(picture.pixels).subspan(place, width));
        }
    }
    return picture;
}

}  // namespace orma
