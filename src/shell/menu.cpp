#include "shell/menu.h"

namespace orma {
namespace {

template <typename Change>
void ForEach(MenuBar& bar, Command command, Change change) {
    for (Menu& menu : bar.menus)
        for (MenuItem& item : menu.items)
            if (item.command == command && item.kind != MenuItem::Kind::kSeparator &&
                item.kind != MenuItem::Kind::kSubmenu)
                change(item);
}

}  // namespace

void MenuBar::Enable(Command command, bool on) {
    ForEach(*this, command, [on](MenuItem& item) { item.enabled = on; });
}

void MenuBar::Tick(Command command, bool on) {
    ForEach(*this, command, [on](MenuItem& item) { item.ticked = on; });
}

}  // namespace orma
