// orma_icon SVG SIZE PNG: renders the program's icon at one size, in pixels.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int count, char** values) {
    if (count != 4) {
        std::fputs("usage: orma_icon SVG SIZE PNG\n", stderr);
        return 2;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(values[1]));
    const int size = QByteArray(values[2]).toInt();
    if (!icon.isValid() || size <= 0) {
        std::fprintf(stderr, "orma_icon: %s cannot be drawn at %s pixels\n", values[1], values[2]);
        return 1;
    }
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(values[3]), "PNG") ? 0 : 1;
}
