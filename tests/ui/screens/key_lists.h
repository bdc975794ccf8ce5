#pragma once

#include <set>

#include <gtest/gtest.h>

#include "ui/screens/w_win.h"

namespace orma::test {

/// The keys that a screen lists, each once and with a name.
inline std::set<Key> KeysOf(const WWin& screen) {
    std::set<Key> keys;
    for (const KeyAction& action : screen.Keys()) {
        EXPECT_TRUE(keys.insert(action.key).second) << ToUtf8(NameOf(action.key));
        EXPECT_NE(NameOf(action.key), Text{});
        EXPECT_NE(action.does, Text{});
    }
    return keys;
}

/// The keys in the tooltips of the controls ("Left, Right") are keys of the screen.
inline void ExpectTooltipsNameKeysOf(const WWin& screen) {
    std::set<Text> names;
    for (const Key key : KeysOf(screen))
        names.insert(NameOf(key));
    for (const Win* const control : Singly(screen.Controls())) {
        Text rest = control->Label().shortcut;
        while (!rest.empty()) {
            const std::size_t end = rest.find(u", ");
            EXPECT_TRUE(names.contains(rest.substr(0, end)))
                << ToUtf8(control->Label().name) << ": " << ToUtf8(rest);
            rest.erase(0, end == Text::npos ? end : end + 2);
        }
    }
}

}  // namespace orma::test
