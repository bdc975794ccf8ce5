#include "window/dialogs/thumbnail.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>

#include "window/dialogs/dialog_look.h"

namespace orma {
namespace {

constexpr std::array kImages{"jpg", "jpeg", "jpe",  "png",  "gif", "bmp",
                             "tif", "tiff", "webp", "heic", "heif"};
constexpr std::array kVideos{"mp4", "m4v", "mov", "avi",  "mkv", "webm",
                             "3gp", "3g2", "mpg", "mpeg", "wmv", "mts"};

// A picture of JPEG is read at a fraction of its size, all others whole.
constexpr qint64 kMostPixels = 24'000'000;
constexpr qint64 kMostJpegPixels = 120'000'000;

bool IsVideo(const QString& path) {
    const QString ending = QFileInfo(path).suffix();
    return std::ranges::any_of(kVideos, [&](const char* one) {
        return ending.compare(QLatin1String(one), Qt::CaseInsensitive) == 0;
    });
}

template <typename List>
QString Patterns(const List& list) {
    QStringList patterns;
    for (const char* ending : list)
        patterns.append(QStringLiteral("*.") + QLatin1String(ending));
    return patterns.join(QLatin1Char(' '));
}

}  // namespace

QImage ReadThumbnail(const QString& path, QSize box) {
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty()) return {};
    const qint64 pixels = qint64{size.width()} * size.height();
    if (pixels > (reader.format() == "jpeg" ? kMostJpegPixels : kMostPixels)) return {};
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize fit = turned ? box.transposed() : box;
    if (size.width() > fit.width() || size.height() > fit.height())
        reader.setScaledSize(size.scaled(fit, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

QImage NeutralThumbnail(const QString& path, QSize box) {
    QImage image(box, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double unit = box.height() / 12.0;
    const QRectF card(box.width() / 2.0 - 7 * unit, unit, 14 * unit, 10 * unit);
    painter.setPen(QPen(look::kKeyEdge, unit / 2));
    painter.setBrush(look::kBody);
    painter.drawRoundedRect(card, 1.5 * unit, 1.5 * unit);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::kKeyEdge);
    const QPointF middle = card.center();
    if (IsVideo(path)) {
        painter.drawPolygon(QPolygonF({middle + QPointF(-1.7 * unit, -2.5 * unit),
                                       middle + QPointF(-1.7 * unit, 2.5 * unit),
                                       middle + QPointF(2.6 * unit, 0)}));
    } else {
        painter.drawEllipse(middle + QPointF(-3.2 * unit, -1.8 * unit), 1.1 * unit, 1.1 * unit);
        painter.drawPolygon(QPolygonF(
            {middle + QPointF(-5.4 * unit, 3.4 * unit), middle + QPointF(-2.6 * unit, 0.2 * unit),
             middle + QPointF(-1.0 * unit, 1.8 * unit), middle + QPointF(1.8 * unit, -1.8 * unit),
             middle + QPointF(5.4 * unit, 3.4 * unit)}));
    }
    return image;
}

QString ImageFilters() {
    return QStringLiteral("Images and videos (%1 %2);;All files (*)")
        .arg(Patterns(kImages), Patterns(kVideos));
}

}  // namespace orma
