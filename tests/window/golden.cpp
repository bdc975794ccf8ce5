#include "window/golden.h"

#include <QCoreApplication>
#include <QDir>
#include <QImageWriter>
#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

namespace orma::test {
namespace {

/// Two renderings of a letter by different patch levels of the font library stay within this: by so
/// much may each of red, green and blue be off, of 255.
constexpr int kTolerance = 40;

/// So many pixels may be off by more. The smallest thing on a screen, a mark of five by five
/// pixels, changes ten of them when it moves by one.
constexpr int kMostPixels = 8;

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
    QImage kept = image;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            kept.setPixel(x, y, Kept(image.pixel(x, y)));
    const QImage small = kept.convertToFormat(QImage::Format_Indexed8);
    return small.convertToFormat(QImage::Format_RGB32) == kept ? small : image;
}

/// Makes the folder too.
void Write(const QImage& image, const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QImageWriter writer(path, "png");
    writer.setCompression(100);
    EXPECT_TRUE(writer.write(image)) << path.toStdString();
}

}  // namespace

void ExpectLooksAsItDid(const std::string& name, const QImage& shown) {
    const QString file = QString::fromStdString(name) + ".png";
    const QString golden = QStringLiteral(ORMA_GOLDEN_FOLDER "/") + file;
    const QImage wanted = QImage(golden).convertToFormat(QImage::Format_RGB32);
    if (qgetenv("ORMA_GOLDEN") == "update") {
        const QImage small = Small(shown);
        if (wanted != small.convertToFormat(QImage::Format_RGB32)) Write(small, golden);
        return;
    }
    QImage difference(shown.size(), QImage::Format_RGB32);
    int pixels = wanted.size() == shown.size() ? 0 : kMostPixels + 1;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const bool off =
                !wanted.valid(x, y) || Farthest(wanted.pixel(x, y), shown.pixel(x, y)) > kTolerance;
            pixels += off ? 1 : 0;
            const int faint = 192 + qGray(shown.pixel(x, y)) / 4;
            difference.setPixel(x, y, off ? qRgb(255, 0, 0) : qRgb(faint, faint, faint));
        }
    }
    if (pixels <= kMostPixels) return;
    const QString folder = QCoreApplication::applicationDirPath() + "/../golden/";
    const QString wrong = folder + QString::fromStdString(name) + "-difference.png";
    Write(shown, folder + file);
    Write(difference, wrong);
    ADD_FAILURE() << pixels << " pixels differ from " << golden.toStdString()
                  << "\n  shown: " << (folder + file).toStdString()
                  << "\n  difference: " << wrong.toStdString()
                  << "\n  ./dev golden makes what is shown the wanted one";
}

void ExpectLooksAsItDid(const std::string& name, QWidget& dialog) {
    dialog.show();
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();  // thumbnails are made one after the other
    ExpectLooksAsItDid("dialogs/" + name,
                       dialog.grab().toImage().convertToFormat(QImage::Format_RGB32));
}

}  // namespace orma::test
