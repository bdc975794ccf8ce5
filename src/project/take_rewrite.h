#pragma once

#include "audio/files/level_sheet.h"
#include "project/take_layout.h"
#include "stream/file_replacement.h"

namespace orma {

/// The files that stand beside a recording while it is rewritten. What a crash leaves of them tells
/// RecoverRewrite how far it came:
///
///   .wa2  .wav  .jv2
///    -     old   -    before and after
///    x     -    any   the new sound has no name yet: the original goes back
///    x     new  any   the new sound stands: the new level file takes its place
///    -     any   x    cut in place: new when the file has its new size, else old
struct RewritePaths {
    static constexpr TextView kOriginal = u".wa2";  // the sound as it was
    static constexpr TextView kLevels = u".jv2";    // the level file that is to be

    explicit RewritePaths(const Text& audioPath);

    Text audio;
    Text original;
    Text nextLevels;
    Text levels;
};

/// Writes a recording anew, its sound and its level file together: afterwards both are the new ones
/// or (a missing file, or) both the old ones, also when a call fails or the process ends on the
/// way. An old file gives way under the extension ".wa2" until all is done. UI thread.
class TakeReplacement {
  public:
    TakeReplacement(FileServices files, const Text& audioPath);

    /// Takes the new file from its first byte on; open unless creating it failed (reported).
    [[nodiscard]] JStreamFile& Stream() { return file_.Stream(); }

    /// Gives everything its name; `sheet` has levels. False (reported) when anything failed since
    /// the start: what was there stands again, or lies under ".wa2" when that fails too.
    [[nodiscard]] bool Commit(const LevelSheet& sheet);

  private:
    void TakeBack(bool replaces);

    FileServices files_;
    RewritePaths paths_;
    FileReplacement file_;
};

/// Cuts a recording of ours in place at `end` (buffer periods) and gives it the level file of what
/// is left; `sheet` has levels. False (reported) when a call failed: whether the recording is then
/// the old or the new one, its size says, and its level file belongs to it. UI thread.
[[nodiscard]] bool TruncateTake(FileServices files, const Text& audioPath, const TakeLayout& layout,
                                std::uint32_t end, const LevelSheet& sheet);

/// Ends what an interrupted rewrite of this recording left: puts the old recording back or gives
/// the new one its level file. Nothing is deleted that holds sound: an original that is not needed
/// any more is moved to "<name> (kept N)". False (reported) when that cannot be done, so that sound
/// and level file may not belong together. UI thread.
[[nodiscard]] bool RecoverRewrite(ReaderServices services, const Text& audioPath);

/// Ends every interrupted rewrite in a folder (with its separator), of recordings of any format.
void RecoverRewritesIn(ReaderServices services, const Text& folder);

}  // namespace orma
