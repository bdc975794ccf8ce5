#include "stream/file_replacement.h"

namespace orma {

FileReplacement::FileReplacement(FileServices services, const Text& path)
    : services_(services),
      path_(path),
      temporaryPath_(path.empty() ? Text() : path + u".tmp"),
      stream_(services, temporaryPath_, false),
      created_(stream_.IsOpen()) {}

FileReplacement::~FileReplacement() {
    // A temporary file that could not be created is another writer's.
    if (committed_ || !created_) return;
    stream_.Close();
    // The old file stands; a temporary one that cannot be removed either harms nobody.
    if (services_.storage.Exists(temporaryPath_)) (void)services_.storage.Delete(temporaryPath_);
}

bool FileReplacement::Commit() {
    stream_.Flush();
    const bool complete = stream_.IsOpen();
    stream_.Close();
    if (!complete || !stream_.Has(JStream::kGood)) return false;
    if (const SystemError error = services_.storage.Rename(temporaryPath_, path_); error != 0) {
        services_.report.ReportSystemFailure(u"MoveFile", error);
        return false;
    }
    committed_ = true;
    return true;
}

}  // namespace orma
