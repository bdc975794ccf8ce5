#pragma once

#include "ui/screens/keys.h"

class QKeyEvent;

namespace orma {

/// What the screens call that key; kOther for keys they do not know, and for those pressed together
/// with Ctrl, Alt or Meta, which belong to menus and the desktop. The digits of the number pad are
/// digits.
[[nodiscard]] Key KeyOf(const QKeyEvent& event);

}  // namespace orma
