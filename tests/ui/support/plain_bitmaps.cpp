#include "ui/support/plain_bitmaps.h"

#include "support/byte_builder.h"

namespace orma::test {
namespace {

Size SizeOf(int number) {
    const struct {
        int first, last;
        Size size;
    } sizes[] = {{500, 502, {1, 80}},  {511, 511, {5, 5}},   {503, 508, {16, 12}},
                 {512, 514, {10, 10}}, {515, 518, {35, 22}}, {519, 519, {38, 20}},
                 {520, 520, {75, 50}}};
    for (const auto& some : sizes)
        if (number >= some.first && number <= some.last) return some.size;
    return {240, 270};
}

}  // namespace

std::vector<std::uint8_t> PlainBitmaps::File(int number, bool doubled) {
    const Size size = SizeOf(number);
    const auto width = static_cast<std::uint32_t>(doubled ? 2 * size.width : size.width);
    const auto height = static_cast<std::uint32_t>(doubled ? 2 * size.height : size.height);
    const std::uint32_t pixelBytes = (width + 3) / 4 * 4 * height;
    constexpr std::uint32_t kHeaders = 14 + 40 + 256 * 4;

    ByteBuilder file;
    file.Put("BM").U32(kHeaders + pixelBytes).U32(0).U32(kHeaders);
    file.U32(40).U32(width).U32(height).U16(1).U16(8).U32(0).U32(pixelBytes);
    file.U32(0).U32(0).U32(256).U32(0);
    file.U32(PixelOfBitmap(number)).Fill(std::size_t{255} * 4);
    return file.Fill(pixelBytes).bytes;
}

}  // namespace orma::test
