#include "app/window_shape.h"

#include "settings/section_file.h"

namespace orma {
namespace {

constexpr std::string_view kSection = "Size";
constexpr std::string_view kLandscape = "Landscape";
constexpr std::string_view kBig = "Big";

}  // namespace

WindowShape ReadWindowShape(Storage& storage, const Text& path) {
    WindowShape shape;
    const int landscape = ReadKey(storage, kSection, kLandscape, 0, path);
    if (landscape == 1 || landscape == 2) shape.landscape = static_cast<std::uint32_t>(landscape);
    shape.big = ReadKey(storage, kSection, kBig, 1, path) == 1 ? 1 : 0;
    return shape;
}

void WriteWindowShape(Storage& storage, const Text& path, const WindowShape& shape) {
    WriteKey(storage, kSection, kLandscape, static_cast<int>(shape.landscape), path);
    WriteKey(storage, kSection, kBig, static_cast<int>(shape.big), path);
}

}  // namespace orma
