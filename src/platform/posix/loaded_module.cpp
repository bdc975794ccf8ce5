#include "platform/posix/loaded_module.h"

#include <string>

#include <dlfcn.h>

#include "platform/posix/program_folder.h"

namespace orma {

void* FindInModule(const char* path, const char* name) {
    const std::string folder = ToUtf8(ExecutableFolder());
    if (folder.empty()) return nullptr;
    void* const module = dlopen((folder + path).c_str(), RTLD_NOW | RTLD_LOCAL);
    return module != nullptr ? dlsym(module, name) : nullptr;
}

}  // namespace orma
