#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "project/clip_entry.h"

namespace orma {

/// The ordered list of clips, one in the system, kept in the project file. All operations check
/// the index range and do nothing outside it. UI thread.
class ClipList {
  public:
    ClipList() = default;
    ClipList(const ClipList&) = delete;
    ClipList& operator=(const ClipList&) = delete;

    /// Removes every clip.
    void Clear();

    /// Puts a clip at the current index when that lies in 0..count, else at the end; returns its
    /// index. The clip's end is reset to 0 (the whole recording). The current index stays, so that
    /// the new clip is current when it took the current one's place.
    std::int32_t Insert(ClipEntry clip);

    /// Puts a clip at the end as it is; returns its index.
    std::int32_t Append(ClipEntry clip);

    /// Puts a clip as it is behind the current one, or at the end when none is; returns its index.
    std::int32_t InsertAfterCurrent(ClipEntry clip);

    /// Removes a clip. The current one stays current; when it is the one that goes, the following
    /// or the new last one becomes current.
    void Remove(std::int32_t index);

    /// Removes the current clip; the following one, or the new last one, becomes current; in an
    /// empty list none is.
    void RemoveCurrent();

    /// Removes every clip whose recording has this base path (folder and name) and tells whether
    /// there was one. The current clip stays current; when it was among them, none is.
    bool RemoveClipsOf(const Text& basePath);

    /// Swaps the current clip with its neighbour and follows it; the ends of the list stay.
    void MoveCurrentUp();
    void MoveCurrentDown();

    /// Makes a clip current; false outside 0..count-1.
    bool SetCurrent(std::int32_t index);

    /// Forgets which clip is current.
    void ClearCurrent() { current_ = -1; }

    [[nodiscard]] std::int32_t CurrentIndex() const { return current_; }
    /// The current clip; null when there is none.
    [[nodiscard]] ClipEntry* Current();
    [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(clips_.size()); }
    [[nodiscard]] bool Empty() const { return clips_.empty(); }
    [[nodiscard]] ClipEntry& At(std::int32_t index) {
        return *clips_[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] const ClipEntry& At(std::int32_t index) const {
        return *clips_[static_cast<std::size_t>(index)];
    }

    /// The sum of all clips' lengths, buffer periods.
    [[nodiscard]] std::uint32_t TotalLength() const;

  private:
    [[nodiscard]] bool Has(std::int32_t index) const { return index >= 0 && index < Count(); }
    void SwapCurrentWith(std::int32_t neighbour);

    std::vector<std::unique_ptr<ClipEntry>> clips_;
    std::int32_t current_ = -1;
};

}  // namespace orma
