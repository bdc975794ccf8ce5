#include "window/menu_bar_view.h"

#include <QMenu>
#include <algorithm>

#include "window/bitmap_action.h"

namespace orma {
namespace {

/// The same lines, which may be grey or ticked differently.
bool HasSameLines(const Menu& a, const Menu& b) {
    return std::ranges::equal(a.items, b.items, [](const MenuItem& x, const MenuItem& y) {
        return x.kind == y.kind && x.command == y.command && x.text == y.text;
    });
}

/// A tick makes an action checkable for good: one that is not ticked shows no empty box.
void SetState(QAction& action, const MenuItem& item) {
    action.setEnabled(item.enabled);
    action.setCheckable(item.ticked);
    action.setChecked(item.ticked);
}

}  // namespace

void MenuBarView::Show(const MenuBar& bar) {
    while (menus_.size() < bar.menus.size())
        Append();
    for (std::size_t i = 0; i < bar.menus.size(); ++i)
        ShowMenu(i, bar.menus[i]);
    for (std::size_t i = 0; i < menus_.size(); ++i)
        menus_[i]->menuAction()->setVisible(i < bar.menus.size());
}

void MenuBarView::Append() {
    const std::size_t place = menus_.size();
    QMenu* const menu = bar_.addMenu(QString());
    menus_.push_back(menu);
    shown_.emplace_back();
    QObject::connect(menu, &QMenu::aboutToShow, [this, place] {
        const Menu present = client_.OnMenuOpening(place);  // a copy: filling may ask again
        ShowMenu(place, present);
    });
}

void MenuBarView::ShowMenu(std::size_t place, const Menu& menu) {
    if (shown_[place] == menu) return;
    QMenu& view = *menus_[place];
    view.setTitle(QString::fromStdU16String(menu.title));
    if (!HasSameLines(menu, shown_[place])) Fill(view, menu.items);
    const auto actions = view.actions();
    for (std::size_t i = 0; i < menu.items.size(); ++i)
        if (menu.items[i].kind != MenuItem::Kind::kSeparator)
            SetState(*actions[static_cast<qsizetype>(i)], menu.items[i]);
    shown_[place] = menu;
}

void MenuBarView::Fill(QMenu& menu, const std::vector<MenuItem>& items) {
    menu.clear();
    for (const MenuItem& item : items) {
        if (item.kind == MenuItem::Kind::kSeparator) {
            menu.addSeparator();
            continue;
        }
        QAction* action = nullptr;
        if (item.kind == MenuItem::Kind::kBitmap)
            action = new BitmapAction(client_.MenuBitmap(), &menu);
        else
            action = new QAction(&menu);
        action->setText(QString::fromStdU16String(item.text));
        QObject::connect(action, &QAction::triggered,
                         [this, command = item.command] { client_.OnCommand(command); });
        menu.addAction(action);
    }
}

}  // namespace orma
