#include "cli/globals.h"

#include <filesystem>

namespace orma::cli {

Text CallerPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return FromUtf8(error ? path : absolute.lexically_normal().string());
}

}  // namespace orma::cli
