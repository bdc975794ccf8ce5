#pragma once

#include <vector>

#include "project/current_recording.h"
#include "stream/jstream_file.h"

namespace orma {

/// A change of marks or cuts that is in the level file as well, or nowhere: made between the
/// construction and Commit, and taken back when the file cannot be written. The level file is
/// replaced whole, so a crash leaves the lists from before or after the change.
class SheetChange {
  public:
    /// Both outlive the change.
    SheetChange(FileServices services, CurrentRecording& recording);

    /// Rewrites the level file; false (reported) when that fails, or no levels are known: then
    /// there is no file that could hold marks and cuts, see EnsureLevels.
    [[nodiscard]] bool Commit();

  private:
    FileServices services_;
    CurrentRecording& recording_;
    std::vector<std::uint32_t> marks_;
    std::vector<RemovedRange> cuts_;
};

}  // namespace orma
