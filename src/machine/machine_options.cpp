#include "machine/machine_options.h"

#include <filesystem>

namespace orma {

Text CallerPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return FromUtf8(error ? path : absolute.lexically_normal().string());
}

}  // namespace orma
