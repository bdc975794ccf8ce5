#include "shell/window_size.h"

#include "settings/section_file.h"

namespace orma {
namespace {

constexpr const char* kSection = "Size";
constexpr int kWide = 1;
constexpr int kLow = 2;

Size ClientOf(int landscape) {
    if (landscape == kWide) return {320, 190};
    if (landscape == kLow) return {240, 190};
    return {240, 270};
}

}  // namespace

WindowSize ReadWindowSize(Storage& storage, const Text& path) {
    int landscape = ReadKey(storage, kSection, "Landscape", 0, path);
    if (landscape != kWide && landscape != kLow) landscape = 0;
    const bool big = ReadKey(storage, kSection, "Big", 1, path) == 1;
    WriteKey(storage, kSection, "Landscape", landscape, path);
    WriteKey(storage, kSection, "Big", big ? 1 : 0, path);
    const int factor = big ? 2 : 1;
    const Size client = ClientOf(landscape);
    return {{client.width * factor, client.height * factor}, static_cast<float>(factor)};
}

}  // namespace orma
