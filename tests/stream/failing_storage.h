#pragma once

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/posix/posix_storage.h"

namespace orma::test {

/// Real files whose operations fail on demand with EIO.
class FailingStorage : public PosixStorage {
  public:
    SystemError Open(const Text& path, const OpenMode& mode,
                     std::unique_ptr<StorageFile>& file) override {
        std::unique_ptr<StorageFile> real;
        const SystemError error = PosixStorage::Open(path, mode, real);
        if (error == 0) file = std::make_unique<File>(*this, std::move(real));
        return error;
    }
    SystemError Rename(const Text& from, const Text& to) override {
        return failRename ? EIO : PosixStorage::Rename(from, to);
    }

    bool failRead = false;
    bool failWrite = false;
    bool failSeek = false;
    bool failFlush = false;
    bool failClose = false;
    bool failRename = false;

  private:
    class File : public StorageFile {
      public:
        File(const FailingStorage& plan, std::unique_ptr<StorageFile> real)
            : plan_(plan), real_(std::move(real)) {}
        SystemError Read(std::span<std::uint8_t> into, std::size_t& got) override {
            const SystemError error = real_->Read(into, got);
            return plan_.failRead ? EIO : error;
        }
        SystemError Write(ByteSpan from, std::size_t& written) override {
            if (!plan_.failWrite) return real_->Write(from, written);
            written = 0;
            return EIO;
        }
        SystemError Seek(std::int64_t offset, SeekFrom origin, std::uint64_t& at) override {
            return plan_.failSeek ? EIO : real_->Seek(offset, origin, at);
        }
        SystemError Size(std::uint64_t& bytes) override { return real_->Size(bytes); }
        SystemError Truncate(std::uint64_t bytes) override { return real_->Truncate(bytes); }
        SystemError Flush() override { return plan_.failFlush ? EIO : real_->Flush(); }
        SystemError Close() override {
            const SystemError error = real_->Close();
            return plan_.failClose ? EIO : error;
        }

      private:
        const FailingStorage& plan_;
        std::unique_ptr<StorageFile> real_;
    };
};

}  // namespace orma::test
