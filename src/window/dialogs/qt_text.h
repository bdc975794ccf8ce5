#pragma once

#include <QFile>
#include <QString>

#include "base/text.h"

namespace orma {

[[nodiscard]] inline QString ToQt(TextView text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline Text FromQt(const QString& text) {
    return text.toStdU16String();
}

/// Paths. Any file name survives the way there and back.
[[nodiscard]] inline QString PathToQt(TextView path) {
    return QFile::decodeName(QByteArray::fromStdString(ToUtf8(path)));
}

[[nodiscard]] inline Text PathFromQt(const QString& path) {
    return FromUtf8(QFile::encodeName(path).toStdString());
}

}  // namespace orma
