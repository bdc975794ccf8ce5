#pragma once

#include <vector>

#include "project/silent_boxes.h"
#include "report/error_reporter.h"
#include "stream/jstream_file.h"

namespace orma {

/// The projects that were current last, the latest first, kept in a small file: one path a line,
/// UTF-8. They are a convenience: a file that cannot be read or written is no reason for a box. UI
/// thread.
class RecentProjects {
  public:
    static constexpr std::size_t kMost = 8;

    /// `path` of the file; `storage` outlives the object. Nothing is read yet.
    RecentProjects(Storage& storage, Text path);

    /// Takes over what the file holds.
    void Load();

    [[nodiscard]] const std::vector<Text>& Paths() const { return paths_; }

    /// Puts a project file's path first, once, and saves; the last one beyond kMost goes.
    void Add(const Text& projectPath);

    /// Forgets a path and saves.
    void Remove(const Text& projectPath);

  private:
    static constexpr std::uint32_t kMostBytes = 65536;

    void Save();

    SilentBoxes boxes_;
    ErrorReporter report_;
    FileServices files_;
    Text path_;
    std::vector<Text> paths_;
};

}  // namespace orma
