#include "shell/shortcuts.h"

#include <algorithm>

namespace orma {

ShortcutGroup ShortcutsOf(const Text& title, std::span<const KeyAction> keys) {
    ShortcutGroup group{title, {}};
    for (const KeyAction& action : keys) {
        const auto same = std::ranges::find(group.shortcuts, action.does, &Shortcut::does);
        if (same == group.shortcuts.end())
            group.shortcuts.push_back({NameOf(action.key), action.does});
        else
            same->keys += u", " + NameOf(action.key);
    }
    return group;
}

void AddShortcutsOfList(ShortcutGroup& group) {
    group.shortcuts.insert(group.shortcuts.end(),
                           {{u"Up, Down", u"Mark another clip"},
                            {u"Ctrl+Up, Ctrl+Down", u"Move the marked clip"},
                            {u"F2", u"Give the marked clip a title"},
                            {u"Shift+Enter", u"Play the marked clip alone"}});
}

ShortcutGroup ShortcutsOfWindow() {
    const auto names = [](Key one, Key other) { return NameOf(one) + u", " + NameOf(other); };
    return {u"Everywhere",
            {{NameOf(Key::kTab) + u", Shift+" + NameOf(Key::kTab),
              u"Go to the next control, or to the one before"},
             {NameOf(Key::kSpace), u"Press the control that is framed"},
             {names(Key::kPlus, Key::kMinus), u"Turn the control that is framed"},
             {NameOf(Key::kEscape), u"No control is framed any more"},
             {NameOf(Key::kRecordButton), u"Of the device: record, or stop what runs"},
             {NameOf(Key::kF1), u"This list"}}};
}

}  // namespace orma
