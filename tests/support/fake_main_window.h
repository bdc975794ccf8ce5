#pragma once

#include <string>
#include <vector>

#include "shell/main_window.h"

namespace orma::test {

/// A window that only remembers what it was told; what matters for an order goes to a shared log.
class FakeMainWindow : public MainWindow {
  public:
    explicit FakeMainWindow(std::vector<std::string>& log) : log_(log) {}

    [[nodiscard]] bool Create(const Text& title, Size client) override {
        log_.push_back(
            Format("create %s %dx%d", ToUtf8(title).c_str(), client.width, client.height));
        return true;
    }
    void Show() override { log_.emplace_back("show"); }
    void Raise() override { log_.emplace_back("raise"); }
    void Destroy() override { log_.emplace_back("destroy"); }
    void SetMenuBar(const MenuBar& bar) override {
        menus = bar;
        ++menusSet;
    }
    void Update(const Rect& changed) override { updated = changed; }
    void CapturePointer(bool on) override { captured = on; }
    void ShowFocus(const Rect& control) override { focus = control; }
    void ShowWaitCursor(bool on) override { log_.emplace_back(on ? "wait" : "arrow"); }
    void EndJob() override { log_.emplace_back("end job"); }
    void Announce(const Text& text) override { announced.push_back(text); }
    void ShowNote(const Note& note) override { notes.push_back(note); }
    [[nodiscard]] Size Display() override { return display; }

    Size display{1920, 1080};
    MenuBar menus;
    int menusSet = 0;
    Rect updated;
    Rect focus;
    bool captured = false;
    std::vector<Text> announced;
    std::vector<Note> notes;

  private:
    std::vector<std::string>& log_;
};

}  // namespace orma::test
