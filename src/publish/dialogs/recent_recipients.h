#pragma once

#include <array>

#include "stream/jstream_file.h"

namespace orma {

/// The mail addresses used last, newest first, in a text file with one a line (Windows-1252). UI
/// thread.
class RecentRecipients {
  public:
    static constexpr std::size_t kCount = 5;

    /// Reads the file at `path`: up to 5 lines of at most 256 characters, whatever ends them; blank
    /// lines do not count. A missing file, or one that cannot be read (reported), has none.
    RecentRecipients(FileServices files, const Text& path);

    /// Always five; "Empty" stands for what the file does not have.
    [[nodiscard]] const std::array<Text, kCount>& Entries() const { return entries_; }

    /// Rewrites the file: `recipient`, then the entries that differ from it. False when the file
    /// could not be written (reported), or is there but could not be read: it then stays.
    [[nodiscard]] bool Store(const Text& recipient);

  private:
    FileServices files_;
    Text path_;
    bool unread_ = false;
    std::array<Text, kCount> entries_;
};

}  // namespace orma
