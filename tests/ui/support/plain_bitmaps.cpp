#include "ui/support/plain_bitmaps.h"

#include "support/byte_builder.h"

namespace orma::test {
namespace {

Size SizeOf(int number) {
    switch (number) {
        case 500:
        case 501:
        case 502:
            return {1, 80};
        case 503:
        case 504:
        case 505:
        case 506:
        case 507:
        case 508:
            return {16, 12};
        case 511:
            return {5, 5};
        case 512:
        case 513:
        case 514:
            return {10, 10};
        case 515:
        case 517:
            return {35, 22};
        case 516:
            return {33, 21};
        case 518:
            return {35, 23};
        case 519:
            return {38, 20};
        case 520:
            return {75, 50};
        default:
            return {240, 270};
    }
}

}  // namespace

std::vector<std::uint8_t> PlainBitmaps::File(int number, bool doubled) {
    if (number < Skin::kFirstBitmap || number > Skin::kLastBitmap || missing.contains(number)) {
        return {};
    }
    Size size = SizeOf(number);
    if (doubled) size = {2 * size.width, 2 * size.height};
    const auto width = static_cast<std::uint32_t>(size.width);
    const auto height = static_cast<std::uint32_t>(size.height);
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
