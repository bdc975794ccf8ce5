#include "window/golden.h"

#include <QCoreApplication>
#include <QDir>
#include <QImageWriter>
#include <algorithm>
#include <cstdlib>

namespace orma::test {
namespace {

int Farthest(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

/// The nearest colour of those that a picture is kept in: so few that a palette holds them, and far
/// within the tolerance.
QRgb Kept(QRgb colour) {
    const auto kept = [](int part) { return std::min((part + 4) / 8 * 8, 255); };
    return qRgb(kept(qRed(colour)), kept(qGreen(colour)), kept(qBlue(colour)));
}

/// With a palette, or as it is when it has too many colours.
QImage Small(const QImage& image) {
    QImage small(image.size(), QImage::Format_Indexed8);
    small.setColorCount(256);
    QList<QRgb> palette;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb colour = Kept(image.pixel(x, y));
            qsizetype at = palette.indexOf(colour);
            if (at < 0) {
                at = palette.size();
                palette.append(colour);
            }
            if (at > 255) return image;
            small.setPixel(x, y, static_cast<uint>(at));
        }
    }
    small.setColorTable(palette);
    return small;
}

/// Makes the folder too.
bool Write(const QImage& image, const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QImageWriter writer(path, "png");
    writer.setCompression(100);
    return writer.write(image);
}

}  // namespace

Difference Compare(const QImage& a, const QImage& b) {
    Difference difference{0, QImage(a.size(), QImage::Format_RGB32)};
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const bool off = Farthest(a.pixel(x, y), b.pixel(x, y)) > Difference::kTolerance;
            difference.pixels += off ? 1 : 0;
            const int faint = 192 + qGray(a.pixel(x, y)) / 4;
            difference.picture.setPixel(x, y, off ? qRgb(255, 0, 0) : qRgb(faint, faint, faint));
        }
    }
    return difference;
}

QImage ImageOf(const Picture& picture) {
    QImage image(picture.width, picture.height, QImage::Format_RGB32);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            image.setPixel(x, y, picture.At(x, y) | 0xFF000000U);
    return image;
}

std::string CompareWithGolden(const std::string& name, const QImage& shown) {
    const QString file = QString::fromStdString(name) + ".png";
    const QString golden = QStringLiteral(ORMA_GOLDEN_FOLDER "/") + file;
    if (qgetenv("ORMA_GOLDEN") == "update") {
        const QImage small = Small(shown);
        const QImage before = QImage(golden).convertToFormat(QImage::Format_RGB32);
        if (before == small.convertToFormat(QImage::Format_RGB32)) return {};
        if (Write(small, golden)) return {};
        return "cannot write " + golden.toStdString();
    }
    const QString folder = QCoreApplication::applicationDirPath() + "/../golden/";
    const QString actual = folder + file;
    const QString wrong = folder + QString::fromStdString(name) + "-difference.png";
    const QImage wanted = QImage(golden).convertToFormat(QImage::Format_RGB32);
    const std::string advice = "\n  shown: " + actual.toStdString() +
                               "\n  ./dev golden makes what is shown the wanted one";
    if (wanted.size() != shown.size()) {
        Write(shown, actual);
        return (wanted.isNull() ? "there is no " : "another size has ") + golden.toStdString() +
               advice;
    }
    const Difference difference = Compare(wanted, shown);
    if (!difference.IsVisible()) return {};
    Write(shown, actual);
    Write(difference.picture, wrong);
    return std::to_string(difference.pixels) + " pixels differ from " + golden.toStdString() +
           "\n  difference: " + wrong.toStdString() + advice;
}

}  // namespace orma::test
