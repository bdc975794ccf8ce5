#pragma once

#include <cstdint>
#include <vector>

#include "base/text.h"
#include "shell/commands.h"

namespace orma {

/// One line of a menu.
struct MenuItem {
    enum class Kind : std::uint8_t {
        kCommand,
        kSeparator,
        kBitmap,   // bitmap 520
        kSubmenu,  // opens `items`, and is no command
    };

    Kind kind = Kind::kCommand;
    Command command = Command::kNone;
    Text text{};  // behind a tab: the key that does the same
    bool enabled = true;
    bool ticked = false;
    std::vector<MenuItem> items{};

    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

struct Menu {
    Text title;
    std::vector<MenuItem> items;

    friend bool operator==(const Menu&, const Menu&) = default;
};

/// The menu bar of a screen.
struct MenuBar {
    std::vector<Menu> menus;

    friend bool operator==(const MenuBar&, const MenuBar&) = default;

    /// Every line with that command, but not in submenus.
    void Tick(Command command, bool on);
};

}  // namespace orma
