#pragma once

#include <span>
#include <vector>

#include "ui/screens/w_win.h"

namespace orma {

/// Keys that do the same, and what that is.
struct Shortcut {
    Text keys;  // "1, Left"
    Text does;

    friend bool operator==(const Shortcut&, const Shortcut&) = default;
};

/// The keys of one screen, or of every screen.
struct ShortcutGroup {
    Text title;
    std::vector<Shortcut> shortcuts;

    friend bool operator==(const ShortcutGroup&, const ShortcutGroup&) = default;
};

/// The list of a screen's keys; those that do the same share a line, which stands where the first
/// of them does.
[[nodiscard]] ShortcutGroup ShortcutsOf(const Text& title, std::span<const KeyAction> keys);

/// Appends the keys that the clip editor's list keeps for itself.
void AddShortcutsOfList(ShortcutGroup& group);

/// The keys that the window keeps for itself, whichever screen is shown.
[[nodiscard]] ShortcutGroup ShortcutsOfWindow();

}  // namespace orma
