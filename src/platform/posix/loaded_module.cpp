#include "platform/posix/loaded_module.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace orma {

void* FindInModule(const char* path, const char* name) {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return nullptr;
    void* const module = dlopen((program.parent_path() / path).c_str(), RTLD_NOW | RTLD_LOCAL);
    return module != nullptr ? dlsym(module, name) : nullptr;
}

}  // namespace orma
