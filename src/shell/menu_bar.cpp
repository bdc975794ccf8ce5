#include "shell/menu_bar.h"

namespace orma {

void MenuBar::Tick(Command command, bool on) {
    for (Menu& menu : menus)
        for (MenuItem& item : menu.items)
            if (item.command == command && item.kind != MenuItem::Kind::kSeparator &&
                item.kind != MenuItem::Kind::kSubmenu)
                item.ticked = on;
}

}  // namespace orma
