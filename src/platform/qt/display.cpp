#include "platform/qt/display.h"

#include <QByteArray>
#include <algorithm>
#include <span>
#include <string_view>

namespace orma {

bool HasDisplay(int count, const char* const* arguments) {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(name)) return true;
    return std::ranges::any_of(
        std::span(arguments, static_cast<std::size_t>(count)),
        [](std::string_view argument) { return argument.ends_with("-platform"); });
}

}  // namespace orma
