#include "support/faulty_storage.h"

namespace orma::test {
namespace {

class FaultyFile : public StorageFile {
  public:
    FaultyFile(FaultyStorage& storage, std::unique_ptr<StorageFile> real)
        : storage_(storage), real_(std::move(real)) {}

    SystemError Read(std::span<std::uint8_t> into, std::size_t& got) override {
        got = 0;
        if (const SystemError error = storage_.Next(FaultyStorage::kRead)) return error;
        return real_->Read(into, got);
    }
    SystemError Write(ByteSpan from, std::size_t& written) override {
        const SystemError error = storage_.Next(FaultyStorage::kWrite);
        if (error == 0) return real_->Write(from, written);
        (void)real_->Write(from.first(from.size() / 2), written);
        return error;
    }
    SystemError Seek(std::int64_t offset, SeekFrom origin, std::uint64_t& position) override {
        if (const SystemError error = storage_.Next(FaultyStorage::kSeek)) return error;
        return real_->Seek(offset, origin, position);
    }
    SystemError Size(std::uint64_t& bytes) override { return real_->Size(bytes); }
    SystemError Truncate(std::uint64_t bytes) override {
        if (const SystemError error = storage_.Next(FaultyStorage::kTruncate)) return error;
        return real_->Truncate(bytes);
    }
    SystemError Flush() override {
        if (const SystemError error = storage_.Next(FaultyStorage::kFlush)) return error;
        return real_->Flush();
    }
    void BeginFlush() override { real_->BeginFlush(); }
    SystemError Close() override {
        const SystemError error = storage_.Next(FaultyStorage::kClose);
        const SystemError real = real_->Close();
        return error != 0 ? error : real;
    }

  private:
    FaultyStorage& storage_;
    std::unique_ptr<StorageFile> real_;
};

}  // namespace

void FaultyStorage::FailAt(unsigned operations, std::size_t n, Extent extent, SystemError error) {
    operations_ = operations;
    count_ = 0;
    failAt_ = n;
    extent_ = extent;
    error_ = error;
}

SystemError FaultyStorage::Next(Operation operation) {
    if ((operations_ & operation) == 0) return 0;
    ++count_;
    const bool fails =
        failAt_ > 0 && (count_ == failAt_ || (count_ > failAt_ && extent_ == Extent::kFromThenOn));
    return fails ? error_ : 0;
}

SystemError FaultyStorage::Open(const Text& path, const OpenMode& mode,
                                std::unique_ptr<StorageFile>& file) {
    if (const SystemError error = Next(kOpen)) return error;
    std::unique_ptr<StorageFile> real;
    if (const SystemError error = real_.Open(path, mode, real)) return error;
    file = std::make_unique<FaultyFile>(*this, std::move(real));
    return 0;
}

SystemError FaultyStorage::Map(const Text& path, std::size_t bytes,
                               std::unique_ptr<MappedFile>& file) {
    if (const SystemError error = Next(kMap)) return error;
    return real_.Map(path, bytes, file);
}

SystemError FaultyStorage::Delete(const Text& path) {
    if (const SystemError error = Next(kDelete)) return error;
    return real_.Delete(path);
}

SystemError FaultyStorage::Rename(const Text& from, const Text& to) {
    if (const SystemError error = Next(kRename)) return error;
    return real_.Rename(from, to);
}

}  // namespace orma::test
