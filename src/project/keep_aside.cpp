#include "project/keep_aside.h"

#include <algorithm>

namespace orma {

bool AnyExists(Storage& storage, const Text& basePath, std::span<const TextView> extensions) {
    return std::ranges::any_of(
        extensions, [&](TextView extension) { return storage.Exists(basePath + Text(extension)); });
}

Text KeptPath(Storage& storage, const Text& basePath, std::span<const TextView> extensions) {
    Text path;
    int number = 1;
    do {
        path = basePath + FormatText(" (kept %d)", number++);
    } while (AnyExists(storage, path, extensions));
    return path;
}

bool KeepAside(FileServices services, const Text& basePath, std::span<const TextView> extensions) {
    Storage& storage = services.storage;
    const Text keptPath = KeptPath(storage, basePath, extensions);
    std::size_t moved = 0;
    SystemError error = 0;
    for (; moved < extensions.size(); ++moved) {
        const Text extension(extensions[moved]);
        if (!storage.Exists(basePath + extension)) continue;
        error = storage.Rename(basePath + extension, keptPath + extension);
        if (error != 0) break;
    }
    if (error == 0) return true;
    while (moved-- > 0) {
        const Text extension(extensions[moved]);
        if (storage.Exists(keptPath + extension))
            (void)storage.Rename(keptPath + extension, basePath + extension);
    }
    services.report.ReportSystemFailure(u"MoveFile", error);
    return false;
}

}  // namespace orma
