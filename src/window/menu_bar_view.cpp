#include "window/menu_bar_view.h"

#include <QApplication>
#include <QFontInfo>
#include <QMainWindow>
#include <QMenu>
#include <algorithm>

#include "window/bitmap_action.h"
#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

using Items = std::vector<MenuItem>;

constexpr int kLeastHeight = 10;  // of letters, pixels

/// The same lines, which may be grey or ticked differently.
bool HasSameLines(const Items& a, const Items& b) {
    return std::ranges::equal(a, b, [](const MenuItem& x, const MenuItem& y) {
        return x.kind == y.kind && x.command == y.command && x.text == y.text &&
               HasSameLines(x.items, y.items);
    });
}

/// File names hold what menus take for a mnemonic's mark.
QString Plain(const Text& text) {
    return ToQt(text).replace(u'&', QStringLiteral("&&"));
}

/// The choice that leads here may come from one of these lines, so they go a little later.
void Clear(QMenu& menu) {
    for (QAction* const action : menu.actions()) {
        menu.removeAction(action);
        if (QMenu* const submenu = action->menu())
            submenu->deleteLater();
        else
            action->deleteLater();
    }
}

/// A tick makes an action checkable for good: one that is not ticked shows no empty box.
void SetState(QAction& action, const MenuItem& item) {
    action.setEnabled(item.enabled);
    action.setCheckable(item.ticked);
    action.setChecked(item.ticked);
}

void SetStates(const QMenu& view, const Items& items) {
    const auto actions = view.actions();
    for (std::size_t i = 0; i < items.size(); ++i) {
        QAction& action = *actions[static_cast<qsizetype>(i)];
        if (items[i].kind == MenuItem::Kind::kSubmenu)
            SetStates(*action.menu(), items[i].items);
        else if (items[i].kind != MenuItem::Kind::kSeparator)
            SetState(action, items[i]);
    }
}

}  // namespace

void MenuBarView::Show(const MenuBar& bar) {
    while (menus_.size() < bar.menus.size())
        Append();
    for (std::size_t i = 0; i < bar.menus.size(); ++i)
        ShowMenu(i, bar.menus[i]);
    for (std::size_t i = 0; i < menus_.size(); ++i)
        menus_[i]->menuAction()->setVisible(i < bar.menus.size());
    Fit();
}

/// In the narrowest window smaller letters keep the last menu from being hidden behind a mark.
void MenuBarView::Fit() {
    const auto* const window = qobject_cast<QMainWindow*>(bar_.window());
    if (window == nullptr || window->centralWidget() == nullptr) return;  // nothing to fit into
    const int room = window->centralWidget()->width();
    QFont font = bar_.font();
    int height = QFontInfo(font).pixelSize();
    while (height > kLeastHeight && bar_.sizeHint().width() > room) {
        font.setPixelSize(--height);
        bar_.setFont(font);
    }
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
    view.setTitle(ToQt(menu.title));
    if (!HasSameLines(menu.items, shown_[place].items)) {
        Clear(view);
        Fill(view, menu.items);
    }
    SetStates(view, menu.items);
    shown_[place] = menu;
}

void MenuBarView::Fill(QMenu& menu, const std::vector<MenuItem>& items) {
    for (const MenuItem& item : items) {
        if (item.kind == MenuItem::Kind::kSeparator) {
            menu.addSeparator();
            continue;
        }
        if (item.kind == MenuItem::Kind::kSubmenu) {
            auto* const submenu = new QMenu(Plain(item.text), &menu);
            Fill(*submenu, item.items);
            menu.addMenu(submenu);
            continue;
        }
        QAction* action = nullptr;
        if (item.kind == MenuItem::Kind::kBitmap)
            action = new BitmapAction(client_.MenuBitmap(), &menu);
        else
            action = new QAction(&menu);
        action->setText(Plain(item.text));
        QObject::connect(action, &QAction::triggered, [this, command = item.command] {
            // Assistive tools reach the menus past a dialog.
            if (QApplication::activeModalWidget() == nullptr) client_.OnCommand(command);
        });
        menu.addAction(action);
    }
}

}  // namespace orma
