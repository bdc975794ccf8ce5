#pragma once

#include <map>

#include "platform/posix/posix_storage.h"
#include "support/temp_folder.h"

namespace orma::test {

/// The files of a folder, by name.
using Snapshot = std::map<Text, Bytes>;

/// The medium of a run: a folder that can be looked at whole and set back. It lies in memory where
/// the system has such a place, because every run flushes dozens of files.
class Medium {
  public:
    Medium();

    [[nodiscard]] Text Path(TextView name = {}) const { return folder_.Path(name); }
    [[nodiscard]] Snapshot Look();

    /// Leaves exactly these files. Sound files get one fixed date, so that runs can be compared.
    void SetBack(const Snapshot& files);

    PosixStorage storage;

  private:
    TempFolder folder_;
};

}  // namespace orma::test
