#pragma once

#include <QImage>
#include <QWidget>
#include <string>

namespace orma::test {

/// Holds a picture against the file of that name in tests/golden; what differs is shown in files in
/// the build folder, which the failure names. With ORMA_GOLDEN=update in the environment it writes
/// the file instead.
void ExpectLooksAsItDid(const std::string& name, const QImage& shown);

/// Shows a dialog and holds it against its picture.
void ExpectLooksAsItDid(const std::string& name, QWidget& dialog);

}  // namespace orma::test
