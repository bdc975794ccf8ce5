#pragma once

#include <QImage>
#include <string>

#include "ui/paint/picture.h"

namespace orma::test {

/// How two pictures of the same size differ.
struct Difference {
    /// Two renderings of a letter by different patch levels of the font library stay within this:
    /// by so much may each of red, green and blue be off, of 255.
    static constexpr int kTolerance = 40;

    /// So many pixels may be off by more. The smallest thing on a screen, a mark of five by five
    /// pixels, changes ten of them when it moves by one.
    static constexpr int kMostPixels = 8;

    int pixels = 0;  // off by more than the tolerance
    QImage picture;  // these in red, the others faint

    [[nodiscard]] bool IsVisible() const { return pixels > kMostPixels; }
};

[[nodiscard]] Difference Compare(const QImage& a, const QImage& b);

[[nodiscard]] QImage ImageOf(const Picture& picture);

/// Holds a picture against the file of that name in tests/golden. Nothing is wrong with an empty
/// answer; else it tells what is, and names the files in the build folder that show it. With
/// ORMA_GOLDEN=update in the environment it writes the file instead.
[[nodiscard]] std::string CompareWithGolden(const std::string& name, const QImage& shown);

}  // namespace orma::test
