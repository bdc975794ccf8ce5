#include "publish/verify_source.h"

namespace orma {

VerifySource::VerifySource(Storage& storage, const Text& path) {
    SystemError error = storage.Open(path, OpenMode{}, file_);
    if (error == 0) error = file_->Size(size_);
    if (error != 0) {
        size_ = 0;
        error_ = Format("error %u %s", error, ToUtf8(storage.ErrorText(error)).c_str());
    }
}

bool VerifySource::Read(std::uint64_t offset, std::span<std::uint8_t> into) {
    if (!file_ || offset > size_ || into.size() > size_ - offset) return false;
    std::uint64_t position = 0;
    std::size_t got = 0;
    return file_->Seek(static_cast<std::int64_t>(offset), SeekFrom::kStart, position) == 0 &&
           file_->Read(into, got) == 0 && got == into.size();
}

}  // namespace orma
