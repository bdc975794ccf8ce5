#include "support/faulty_storage.h"

#include <array>
#include <bit>
#include <utility>

#include "base/path.h"

namespace orma::test {
namespace {

// In the order of their bits.
constexpr std::array kOperationNames = {"open",  "read",  "write",  "seek",   "truncate",
                                        "flush", "close", "rename", "delete", "map"};

class FaultyFile : public StorageFile {
  public:
    FaultyFile(FaultyStorage& storage, std::unique_ptr<StorageFile> real, Text path)
        : storage_(storage), real_(std::move(real)), path_(std::move(path)) {}

    SystemError Read(std::span<std::uint8_t> into, std::size_t& got) override {
        got = 0;
        const SystemError error = storage_.Next(FaultyStorage::kRead, path_);
        if (error == FaultyStorage::kCutShort) return real_->Read(into.first(into.size() / 2), got);
        return error != 0 ? error : real_->Read(into, got);
    }
    SystemError Write(ByteSpan from, std::size_t& written) override {
        const SystemError error = storage_.Next(FaultyStorage::kWrite, path_);
        if (error == 0) return real_->Write(from, written);
        (void)real_->Write(from.first(from.size() / 2), written);
        return error;
    }
    SystemError Seek(std::int64_t offset, SeekFrom origin, std::uint64_t& position) override {
        const SystemError error = storage_.Next(FaultyStorage::kSeek, path_);
        return error != 0 ? error : real_->Seek(offset, origin, position);
    }
    SystemError Size(std::uint64_t& bytes) override {
        const SystemError error = storage_.Next(FaultyStorage::kLook, path_);
        return error != 0 ? error : real_->Size(bytes);
    }
    SystemError Truncate(std::uint64_t bytes) override {
        const SystemError error = storage_.Next(FaultyStorage::kTruncate, path_);
        return error != 0 ? error : real_->Truncate(bytes);
    }
    SystemError Flush() override {
        const SystemError error = storage_.Next(FaultyStorage::kFlush, path_);
        return error != 0 ? error : real_->Flush();
    }
    void BeginFlush() override { real_->BeginFlush(); }
    SystemError Close() override {
        const SystemError error = storage_.Next(FaultyStorage::kClose, path_);
        const SystemError real = real_->Close();
        return error != 0 ? error : real;
    }

  private:
    FaultyStorage& storage_;
    std::unique_ptr<StorageFile> real_;
    Text path_;
};

}  // namespace

void FaultyStorage::FailAt(unsigned operations, std::size_t n, Extent extent, SystemError error) {
    operations_ = operations;
    count_ = 0;
    failAt_ = n;
    extent_ = extent;
    error_ = error;
    failedCall_.clear();
}

SystemError FaultyStorage::Next(Operation operation, const Text& path) {
    if ((operations_ & operation) == 0) return 0;
    ++count_;
    const std::size_t end = extent_ == Extent::kOnce        ? failAt_ + 1
                            : extent_ == Extent::kForAWhile ? failAt_ + kWhile
                                                            : SIZE_MAX;
    const bool fails = failAt_ > 0 && count_ >= failAt_ && count_ < end;
    if (!fails) return 0;
    if (failedCall_.empty()) {
        const auto bit = static_cast<std::size_t>(std::countr_zero(unsigned{operation}));
        const char* name = bit < kOperationNames.size() ? kOperationNames[bit] : "look at";
        const PathParts parts = SplitPath(path);
        failedCall_ =
            std::to_string(count_) + ": " + name + " " + ToUtf8(parts.name + parts.extension);
    }
    return error_;
}

SystemError FaultyStorage::Open(const Text& path, const OpenMode& mode,
                                std::unique_ptr<StorageFile>& file) {
    if (const SystemError error = Next(kOpen, path)) return error;
    std::unique_ptr<StorageFile> real;
    if (const SystemError error = real_.Open(path, mode, real)) return error;
    file = std::make_unique<FaultyFile>(*this, std::move(real), path);
    return 0;
}

}  // namespace orma::test
