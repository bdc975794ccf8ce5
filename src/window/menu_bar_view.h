#pragma once

#include <QMenuBar>
#include <functional>
#include <vector>

#include "window/qt_main_window.h"

namespace orma {

/// Shows a `MenuBar`. Menus stay the same objects while their content changes, so that a change may
/// come while one is about to open.
class MenuBarView {
  public:
    /// Both outlive it.
    MenuBarView(QMenuBar& bar, QtMainWindow::Client& client) : bar_(bar), client_(client) {}
    MenuBarView(const MenuBarView&) = delete;
    MenuBarView& operator=(const MenuBarView&) = delete;

    void Show(const MenuBar& bar);

  private:
    void Append();
    void Fit();
    void ShowMenu(std::size_t place, const Menu& menu);
    void Fill(QMenu& menu, const std::vector<MenuItem>& items);

    QMenuBar& bar_;
    QtMainWindow::Client& client_;
    std::vector<QMenu*> menus_;  // the bar's
    std::vector<Menu> shown_;
};

}  // namespace orma
