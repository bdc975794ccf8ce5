#include "stream/file_replacement.h"

namespace orma {

FileReplacement::FileReplacement(FileServices services, const Text& path)
    : services_(services),
      path_(path),
      temporaryPath_(path.empty() ? Text() : path + u".tmp"),
      stream_(services) {
    stream_.OpenInTurn(temporaryPath_);
    created_ = stream_.IsOpen();
}

FileReplacement::~FileReplacement() {
    // A temporary file that could not be created is another writer's.
    if (committed_ || !created_) return;
    // Removed while it is ours. The old file stands; a temporary one that stays harms nobody.
    if (services_.storage.Exists(temporaryPath_)) (void)services_.storage.Delete(temporaryPath_);
}

bool FileReplacement::Commit() {
    stream_.Flush();
    if (!stream_.IsOpen()) return false;
    // Renamed while it is ours: another writer of the file waits for its turn, and would empty it
    // under the old name.
    if (const SystemError error = services_.storage.Rename(temporaryPath_, path_); error != 0) {
        services_.report.ReportSystemFailure(u"MoveFile", error);
        return false;
    }
    committed_ = true;
    stream_.Close();  // all of it is on the medium already
    return true;
}

}  // namespace orma
