#pragma once

#include "ui/paint/picture.h"

namespace orma::test {

/// Every pixel of a picture, from the top left, whichever way it keeps them.
inline std::vector<Pixel> PixelsOf(const Picture& picture) {
    std::vector<Pixel> pixels;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            pixels.push_back(picture.At(x, y));
    return pixels;
}

}  // namespace orma::test
