#pragma once

#include <QImage>

#include "palette.h"
#include "ui/skin/layout.h"

namespace orma::art {

/// The screens that have a pair of pages; recorder and editor share one.
enum class Page { Empty, Progress, Transport, Clips, About };

/// Draws a page in full, `scale` picture pixels to the design pixel. The pressed page is the normal
/// one with every control lit, and differs from it inside the controls' rectangles only.
[[nodiscard]] QImage DrawPage(const Palette& palette, const Layout& layout, Page page, bool pressed,
                              int scale);

}  // namespace orma::art
