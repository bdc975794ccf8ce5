#pragma once

#include <map>
#include <memory>

#include "platform/storage.h"

namespace orma::test {

/// Files that live in memory, with the manners of real ones: one writer at a time, a rename that
/// replaces, a file that is still readable by who had opened it. Folders need not exist. Counts
/// what is asked of it, so that a test can tell work without looking at a clock.
class MemoryStorage : public Storage {
  public:
    struct Node {
        Bytes bytes;
        FileTime lastWrite{};
        bool beingWritten = false;
    };

    /// Creates or replaces a file, without counting.
    void Put(const Text& path, ByteSpan bytes);

    /// A file's bytes; null when there is none.
    [[nodiscard]] const Bytes* Find(const Text& path) const;

    /// Calls to this storage and its files so far, and the bytes they read and wrote.
    [[nodiscard]] std::uint64_t Calls() const { return calls_; }
    [[nodiscard]] std::uint64_t BytesMoved() const { return bytesMoved_; }

    /// Starts both counts afresh.
    void ResetCounts() { calls_ = bytesMoved_ = 0; }

    /// For the files of this storage.
    void Count(std::uint64_t bytes = 0);

    [[nodiscard]] SystemError Open(const Text& path, const OpenMode& mode,
                                   std::unique_ptr<StorageFile>& file) override;
    [[nodiscard]] SystemError Map(const Text& path, std::size_t bytes,
                                  std::unique_ptr<MappedFile>& file) override;
    [[nodiscard]] bool Exists(const Text& path) override { return Use(path) != nullptr; }
    [[nodiscard]] SystemError Delete(const Text& path) override;
    [[nodiscard]] SystemError Rename(const Text& from, const Text& to) override;
    [[nodiscard]] SystemError LastWriteTime(const Text& path, FileTime& time) override;
    [[nodiscard]] SystemError SetLastWriteTime(const Text& path, FileTime time) override;
    [[nodiscard]] SystemError FreeBytes(const Text&, std::uint64_t& bytes) override {
        Count();
        bytes = std::uint64_t{1} << 40;
        return 0;
    }
    [[nodiscard]] SystemError CreateFolder(const Text&) override {
        Count();
        return 0;
    }
    [[nodiscard]] SystemError ListFiles(const Text& folder, std::vector<Text>& names) override;
    [[nodiscard]] Text ErrorText(SystemError) override { return {}; }

  private:
    /// Counts a call for a file and finds it; null when there is none.
    std::shared_ptr<Node> Use(const Text& path);

    std::map<Text, std::shared_ptr<Node>> files_;
    std::uint64_t calls_ = 0;
    std::uint64_t bytesMoved_ = 0;
};

}  // namespace orma::test
