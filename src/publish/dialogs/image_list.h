#pragma once

#include <cstdint>
#include <vector>

#include "stream/jstream_file.h"

namespace orma {

/// The images (and videos) that are published beside or without sound: local paths and sizes, in
/// sending order. UI thread.
class ImageList {
  public:
    /// Published images are numbered with two digits, from 01.
    static constexpr std::size_t kCapacity = 99;

    struct Image {
        Text path;
        std::uint64_t bytes = 0;
    };

    /// Adds a file at the end. False, and an unchanged list, when it cannot be read, has more than
    /// 2^32-1 bytes, or the list is full (reported).
    [[nodiscard]] bool Add(FileServices files, const Text& path);

    /// Removes one; a place behind the end is nothing to do.
    void Remove(std::size_t index);
    void Clear() { images_.clear(); }

    /// Measures the files again, as they may have changed since they were chosen. One that can no
    /// longer be sent leaves the list, and a box names it.
    void Refresh(FileServices files);

    [[nodiscard]] const std::vector<Image>& Images() const { return images_; }
    [[nodiscard]] std::size_t Count() const { return images_.size(); }

    /// The sum of all sizes, bytes.
    [[nodiscard]] std::uint64_t TotalBytes() const;

  private:
    std::vector<Image> images_;
};

}  // namespace orma
