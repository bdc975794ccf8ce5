#pragma once

#include <cstddef>

#include "base/bytes.h"

namespace orma::test {

/// A bitmap file of 8 bits a pixel with a grey palette, built by hand: 14 bytes of file header, 40
/// of information, 256 entries, rows from the bottom up in whole units of 4 bytes. The pixel in
/// column x of row y (from the top) has the grey `first` + x + 16 y.
inline Bytes GreyBitmap(std::int32_t width, std::int32_t height, std::uint8_t first = 0) {
    constexpr std::size_t kRows = 14 + 40 + 256 * 4;
    const auto rowBytes = static_cast<std::size_t>((width + 3) / 4 * 4);
    Bytes file(kRows + rowBytes * static_cast<std::size_t>(height));
    file[0] = 'B';
    file[1] = 'M';
    StoreLe(&file[10], static_cast<std::uint32_t>(kRows));
    StoreLe(&file[14], std::uint32_t{40});
    StoreLe(&file[18], width);
    StoreLe(&file[22], height);
    StoreLe(&file[26], std::uint16_t{1});
    StoreLe(&file[28], std::uint16_t{8});
    for (std::uint32_t grey = 0; grey < 256; ++grey)
        StoreLe(&file[54 + 4 * grey], 0xAA000000 | grey * 0x010101);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x)
            file[kRows + rowBytes * static_cast<std::size_t>(height - 1 - y) +
                 static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(first + x + 16 * y);
    return file;
}

}  // namespace orma::test
