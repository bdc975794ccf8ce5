#pragma once

#include <cstddef>
#include <string>

#include "platform/posix/posix_storage.h"

namespace orma::test {

/// Real storage that fails on demand: the n-th of chosen operations, once or from then on. To try
/// every place where a run can fail, let it run once without a fault, read Count, and repeat it
/// for each n from 1 to there.
class FaultyStorage : public Storage {
  public:
    /// Bits of the operations that are counted and can fail.
    enum Operation : unsigned {
        kOpen = 1,
        kRead = 2,
        kWrite = 4,  // half of the bytes arrive before the failure
        kSeek = 8,
        kTruncate = 16,
        kFlush = 32,
        kClose = 64,  // the file is closed all the same
        kRename = 128,
        kDelete = 256,
        kMap = 512,
        kAll = 1023,
        kLook = 1024,  // size, times, free space, list of files; never part of kAll
    };
    enum class Extent {
        kOnce,
        kForAWhile,   // kWhile calls long
        kFromThenOn,  // the medium is full or gone
    };
    static constexpr std::size_t kWhile = 12;

    static constexpr SystemError kNoSpace = 28;
    static constexpr SystemError kCutShort =
        ~SystemError{0};  // a read gives half, without an error

    /// On the real files; or on `real`, which outlives the storage.
    FaultyStorage() : real_(files_) {}
    explicit FaultyStorage(Storage& real) : real_(real) {}

    /// Lets the `n`-th (from 1) of the `operations` from now on fail; 0: none. Restarts the count.
    void FailAt(unsigned operations, std::size_t n, Extent extent = Extent::kOnce,
                SystemError error = kNoSpace);

    /// How many of the operations were called since FailAt; of all operations at first.
    [[nodiscard]] std::size_t Count() const { return count_; }

    /// True when a call has failed since FailAt.
    [[nodiscard]] bool HasFailed() const { return failAt_ > 0 && count_ >= failAt_; }

    /// The first call that failed since FailAt, for people: its number, kind and file, as
    /// "57: write talk01.wav"; empty when none has.
    [[nodiscard]] const std::string& FailedCall() const { return failedCall_; }

    /// Counts a call on the file `path`; the error that it must return, or 0. For the files of this
    /// storage.
    [[nodiscard]] SystemError Next(Operation operation, const Text& path = {});

    [[nodiscard]] SystemError Open(const Text& path, const OpenMode& mode,
                                   std::unique_ptr<StorageFile>& file) override;
    [[nodiscard]] SystemError Map(const Text& path, std::size_t bytes,
                                  std::unique_ptr<MappedFile>& file) override {
        const SystemError error = Next(kMap, path);
        return error != 0 ? error : real_.Map(path, bytes, file);
    }
    [[nodiscard]] bool Exists(const Text& path) override { return real_.Exists(path); }
    [[nodiscard]] SystemError Delete(const Text& path) override {
        const SystemError error = Next(kDelete, path);
        return error != 0 ? error : real_.Delete(path);
    }
    [[nodiscard]] SystemError Rename(const Text& from, const Text& to) override {
        const SystemError error = Next(kRename, from);
        return error != 0 ? error : real_.Rename(from, to);
    }
    [[nodiscard]] SystemError LastWriteTime(const Text& path, FileTime& time) override {
        const SystemError error = Next(kLook, path);
        return error != 0 ? error : real_.LastWriteTime(path, time);
    }
    [[nodiscard]] SystemError SetLastWriteTime(const Text& path, FileTime time) override {
        return real_.SetLastWriteTime(path, time);
    }
    [[nodiscard]] SystemError FreeBytes(const Text& folder, std::uint64_t& bytes) override {
        const SystemError error = Next(kLook, folder);
        return error != 0 ? error : real_.FreeBytes(folder, bytes);
    }
    [[nodiscard]] SystemError CreateFolder(const Text& path) override {
        return real_.CreateFolder(path);
    }
    [[nodiscard]] SystemError ListFiles(const Text& folder, std::vector<Text>& names) override {
        const SystemError error = Next(kLook, folder);
        return error != 0 ? error : real_.ListFiles(folder, names);
    }
    [[nodiscard]] Text ErrorText(SystemError error) override { return real_.ErrorText(error); }

  private:
    PosixStorage files_;
    Storage& real_;
    unsigned operations_ = kAll;
    std::size_t count_ = 0;
    std::size_t failAt_ = 0;
    Extent extent_ = Extent::kOnce;
    SystemError error_ = kNoSpace;
    std::string failedCall_;
};

}  // namespace orma::test
