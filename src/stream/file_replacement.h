#pragma once

#include "stream/jstream_file.h"

namespace orma {

/// Replaces a file whole or not at all: the new content goes to "<path>.tmp", is flushed and then
/// renamed over the old file. Destroyed without Commit, it leaves the old file as it was and
/// removes the temporary one. Two writers of one file, also of two processes, take turns; the
/// second one waits up to two seconds.
class FileReplacement {
  public:
    FileReplacement(FileServices services, const Text& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// The stream that takes the new content, open unless creating it failed (reported).
    [[nodiscard]] JStreamFile& Stream() { return stream_; }

    /// Flushes, renames and closes; false when anything failed since the start (reported). A
    /// failure to close, when all is done, is reported alone.
    [[nodiscard]] bool Commit();

  private:
    FileServices services_;
    Text path_;
    Text temporaryPath_;
    JStreamFile stream_;
    bool created_ = false;
    bool committed_ = false;
};

}  // namespace orma
