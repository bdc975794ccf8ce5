#pragma once

#include <string>
#include <vector>

#include "ui/screens/screen_host.h"

namespace orma::test {

/// The window around a screen: remembers what was asked of it.
class FakeHost : public ScreenHost {
  public:
    void TickScreen(ScreenIndex screen, bool on) override {
        told += (on ? "+" : "-") + std::to_string(static_cast<int>(screen)) + " ";
    }
    void Invalidate() override { told += "paint "; }
    void UpdateMenus() override { told += "menus "; }
    void Announce(const Text& text) override { announced.push_back(text); }

    std::string told;
    std::vector<Text> announced;
};

}  // namespace orma::test
