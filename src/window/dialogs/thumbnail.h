#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace orma {

/// A small picture of an image file, upright, that fits into `box` (device pixels). Null when the
/// file is no image that this system reads, or so large that reading it would take more than some
/// hundred megabytes of memory.
[[nodiscard]] QImage ReadThumbnail(const QString& path, QSize box);

/// What stands for a file whose picture is not shown (yet): a film for a video, else a sheet.
[[nodiscard]] QImage NeutralThumbnail(const QString& path, QSize box);

/// The lines of the file dialog's filter.
[[nodiscard]] QString ImageFilters();

}  // namespace orma
