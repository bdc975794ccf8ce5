#pragma once

#include <QColor>

#include "ui/paint/colour.h"

namespace orma {

[[nodiscard]] inline QColor QtColour(Colour colour) {
    return {colour.red, colour.green, colour.blue};
}

}  // namespace orma
