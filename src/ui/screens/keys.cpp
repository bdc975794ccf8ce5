#include "ui/screens/keys.h"

#include <array>
#include <utility>

namespace orma {
namespace {

constexpr std::array<std::pair<Key, const char16_t*>, 19> kNames{{
    {Key::kBackspace, u"Backspace"},
    {Key::kTab, u"Tab"},
    {Key::kEnter, u"Enter"},
    {Key::kEscape, u"Escape"},
    {Key::kSpace, u"Space"},
    {Key::kPageUp, u"Page up"},
    {Key::kPageDown, u"Page down"},
    {Key::kEnd, u"End"},
    {Key::kHome, u"Home"},
    {Key::kLeft, u"Left"},
    {Key::kUp, u"Up"},
    {Key::kRight, u"Right"},
    {Key::kDown, u"Down"},
    {Key::kInsert, u"Insert"},
    {Key::kDelete, u"Delete"},
    {Key::kF1, u"F1"},
    {Key::kPlus, u"+"},
    {Key::kMinus, u"-"},
    {Key::kRecordButton, u"Record key"},
}};

}  // namespace

Text NameOf(Key key) {
    for (const auto& [named, name] : kNames)
        if (named == key) return name;
    const bool isDigit = key >= Key::k0 && key <= Key::k9;
    const bool isLetter = key >= Key::kA && key <= Key::kZ;
    return isDigit || isLetter ? Text(1, static_cast<char16_t>(key)) : Text{};
}

}  // namespace orma
