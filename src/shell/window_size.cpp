#include "shell/window_size.h"

#include "app/window_shape.h"

namespace orma {
namespace {

Size Undoubled(std::uint32_t landscape) {
    switch (landscape) {
        case 1:
            return {320, 190};
        case 2:
            return {240, 190};
        default:
            return {240, 270};
    }
}

}  // namespace

Size ReadWindowSize(Storage& storage, const Text& path) {
    const WindowShape shape = ReadWindowShape(storage, path);
    WriteWindowShape(storage, path, shape);
    const Size client = Undoubled(shape.landscape);
    return shape.big != 0 ? Size{2 * client.width, 2 * client.height} : client;
}

}  // namespace orma
