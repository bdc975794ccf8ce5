#include "platform/posix/program_folder.h"

#include <cstdlib>
#include <filesystem>

#include "base/path.h"

namespace orma {
namespace {

bool IsProgramFolder(Storage& storage, const Text& folder) {
    for (const TextView file : {u"OrmaIni.sup", u"OrmaSet.sup", u"portable.txt"})
        if (storage.Exists(folder + Text(file))) return true;
    return false;
}

Text UserDataFolder() {
    // The environment is read once, before any thread could change it.
    const char* data = std::getenv("XDG_DATA_HOME");  // NOLINT(concurrency-mt-unsafe)
    if (data != nullptr && *data == '/') return AsFolder(FromUtf8(data)) + u"orma-edit/";
    const char* user = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe)
    return AsFolder(FromUtf8(user != nullptr ? user : "/")) + u".local/share/orma-edit/";
}

}  // namespace

Text ExecutableFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? Text() : AsFolder(FromUtf8(program.parent_path().string()));
}

SystemError FindProgramFolder(Storage& storage, const Text& home, Text& folder) {
    if (!home.empty()) {
        folder = AsFolder(home);
    } else if (const Text own = ExecutableFolder(); !own.empty() && IsProgramFolder(storage, own)) {
        folder = own;
        return 0;
    } else {
        folder = UserDataFolder();
    }
    return storage.CreateFolder(folder);
}

}  // namespace orma
