#include "window/qt_keys.h"

#include <QKeyEvent>
#include <array>
#include <utility>

namespace orma {
namespace {

constexpr std::array<std::pair<int, Key>, 21> kKeys{{
    {Qt::Key_Backspace, Key::kBackspace},
    {Qt::Key_Tab, Key::kTab},
    {Qt::Key_Backtab, Key::kTab},  // together with Shift
    {Qt::Key_Return, Key::kEnter},
    {Qt::Key_Enter, Key::kEnter},
    {Qt::Key_Escape, Key::kEscape},
    {Qt::Key_Space, Key::kSpace},
    {Qt::Key_PageUp, Key::kPageUp},
    {Qt::Key_PageDown, Key::kPageDown},
    {Qt::Key_End, Key::kEnd},
    {Qt::Key_Home, Key::kHome},
    {Qt::Key_Left, Key::kLeft},
    {Qt::Key_Up, Key::kUp},
    {Qt::Key_Right, Key::kRight},
    {Qt::Key_Down, Key::kDown},
    {Qt::Key_Insert, Key::kInsert},
    {Qt::Key_Delete, Key::kDelete},
    {Qt::Key_F1, Key::kF1},
    {Qt::Key_Plus, Key::kPlus},
    {Qt::Key_Minus, Key::kMinus},
    {Qt::Key_MediaRecord, Key::kRecordButton},
}};

/// The key that stands so far behind `first`.
Key Behind(Key first, int steps) {
    return static_cast<Key>(static_cast<int>(first) + steps);
}

}  // namespace

Key KeyOf(const QKeyEvent& event) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0)
        return Key::kOther;
    const int key = event.key();
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return Behind(Key::k0, key - Qt::Key_0);
    if (key >= Qt::Key_A && key <= Qt::Key_Z) return Behind(Key::kA, key - Qt::Key_A);
    for (const auto& [theirs, ours] : kKeys)
        if (theirs == key) return ours;
    return Key::kOther;
}

}  // namespace orma
