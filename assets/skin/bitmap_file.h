#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

namespace orma::art {

/// At most 256 colours for `images` together: their most frequent ones exactly, the soft edges by
/// the nearest of what remains. Images that share colours are alike in the file wherever they are
/// alike.
[[nodiscard]] QList<QRgb> ChooseColours(const QList<QImage>& images);

/// `image` as a device-independent bitmap file of 8 bits a pixel: 14 bytes of file header, 40 of
/// information, 256 palette entries, then the rows from the bottom up, each padded to 4 bytes. Each
/// pixel takes the nearest of `colours`; nothing is dithered.
[[nodiscard]] QByteArray EncodeBitmap(const QImage& image, const QList<QRgb>& colours);

}  // namespace orma::art
