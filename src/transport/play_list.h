#pragma once

#include <cstdint>
#include <optional>

#include "project/project.h"

namespace orma {

/// The clips of the list from one on, in order, as they are heard: each one's own range, or the
/// whole recording, less its cuts. `Next` makes the clips the current recording one after the
/// other. UI thread.
class PlayList {
  public:
    /// Begins with clip `first` (0 ...); at most `clips` of them are played.
    PlayList(Project& project, std::int32_t first, std::int32_t clips);

    /// Leaves out what is heard before `from` and from `to` on: buffer periods of the list as it
    /// is heard, counted from the first clip's beginning.
    void Trim(std::uint32_t from, std::uint32_t to);

    /// The most channels among the clips; 0 when none can be read.
    [[nodiscard]] std::uint16_t Channels() const;

    /// Selects the next clip of which something is heard and returns what of it; nothing when there
    /// is none. Clips whose recording cannot be read are left out (reported unless missing).
    [[nodiscard]] std::optional<PeriodRange> Next();

    /// Clips that Next has returned a range of.
    [[nodiscard]] std::int32_t Played() const { return played_; }

  private:
    [[nodiscard]] PeriodRange Trimmed(PeriodRange clip);

    Project& project_;
    std::int32_t next_;
    std::int32_t end_;
    std::uint32_t skip_ = 0;  // periods still to be left out
    std::uint32_t left_;      // periods still to be heard
    std::int32_t played_ = 0;
};

}  // namespace orma
