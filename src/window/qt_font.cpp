#include "window/qt_font.h"

#include <QStringList>
#include <algorithm>

namespace orma {
namespace {

// A window that is larger shows nothing that needs larger letters; the toolkit's own limits are
// far.
constexpr int kLargestFont = 2000;  // pixels

}  // namespace

QFont QtFontOf(const Font& font) {
    QFont made;
    made.setFamilies({QStringLiteral("Inter"), QStringLiteral("DejaVu Sans")});
    made.setPixelSize(std::clamp(font.height, 1, kLargestFont));
    made.setWeight(font.weight == FontWeight::kSemiBold ? QFont::DemiBold : QFont::Medium);
    made.setHintingPreference(QFont::PreferVerticalHinting);
    made.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return made;
}

}  // namespace orma
