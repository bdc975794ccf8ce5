#include "platform/posix/posix_storage.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "base/trace.h"
#include "platform/posix/mapping_guard.h"
#include "platform/posix/medium_sync.h"

namespace orma {
namespace {

constexpr std::chrono::seconds kLongestWait{2};
constexpr std::chrono::milliseconds kWaitStep{5};

SystemError LastError() {
    return static_cast<SystemError>(errno);
}

/// Paths written on another system may use its separator; a backslash is not used here.
std::string NativePath(const Text& path) {
    std::string native = ToUtf8(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

/// The folder that a file lies in; empty: the current one.
std::string FolderOf(const std::string& nativePath) {
    return std::filesystem::path(nativePath).parent_path().string();
}

/// The same, never empty.
std::string FolderToSync(const std::string& nativePath) {
    const std::string folder = FolderOf(nativePath);
    return folder.empty() ? "." : folder;
}

/// Asks for the syncs of one open file.
class SyncHandle {
  public:
    /// `createdIn`: the folder of a file that was just created, else empty.
    SyncHandle(BackgroundSync& sync, int descriptor, bool isWritten, std::string createdIn)
        : sync_(sync),
          target_(isWritten ? sync.TargetOf(descriptor, !createdIn.empty()) : nullptr),
          createdIn_(std::move(createdIn)) {}

    void Begin(int descriptor) {
        if (target_ != nullptr && sync_.Request(target_, descriptor, createdIn_))
            createdIn_.clear();
    }

    [[nodiscard]] SystemError TakeError() {
        return target_ == nullptr ? 0 : static_cast<SystemError>(target_->TakeError());
    }

  private:
    BackgroundSync& sync_;
    std::shared_ptr<BackgroundSync::Target> target_;
    std::string createdIn_;
};

class PosixFile : public StorageFile {
  public:
    PosixFile(int descriptor, SyncHandle sync) : descriptor_(descriptor), sync_(std::move(sync)) {}
    ~PosixFile() override { (void)Close(); }

    SystemError Read(std::span<std::uint8_t> into, std::size_t& got) override {
        got = 0;
        while (got < into.size()) {
            const ssize_t n = ::read(descriptor_, into.data() + got, into.size() - got);
            if (n == 0) break;
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) return LastError();
            got += static_cast<std::size_t>(n);
        }
        return 0;
    }

    SystemError Write(ByteSpan from, std::size_t& written) override {
        written = 0;
        if (const SystemError error = sync_.TakeError()) return error;
        while (written < from.size()) {
            const ssize_t n = ::write(descriptor_, from.data() + written, from.size() - written);
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) return LastError();
            if (n == 0) return EIO;  // a medium that takes nothing and gives no reason
            written += static_cast<std::size_t>(n);
        }
        return 0;
    }

    SystemError Seek(std::int64_t offset, SeekFrom origin, std::uint64_t& position) override {
        constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
        const off_t at = ::lseek(descriptor_, offset, kOrigins[static_cast<int>(origin)]);
        if (at < 0) return LastError();
        position = static_cast<std::uint64_t>(at);
        return 0;
    }

    SystemError Size(std::uint64_t& bytes) override {
        struct stat info {};
        if (::fstat(descriptor_, &info) != 0) return LastError();
        bytes = static_cast<std::uint64_t>(info.st_size);
        return 0;
    }

    SystemError Truncate(std::uint64_t bytes) override {
        return ::ftruncate(descriptor_, static_cast<off_t>(bytes)) == 0 ? 0 : LastError();
    }

    SystemError Flush() override {
        const SystemError earlier = sync_.TakeError();
        const auto now = static_cast<SystemError>(SyncFile(descriptor_));
        return earlier != 0 ? earlier : now;
    }

    void BeginFlush() override { sync_.Begin(descriptor_); }

    SystemError Close() override {
        if (descriptor_ < 0) return EBADF;
        // A sync that is still on its way holds the file, but not the lock.
        (void)::flock(descriptor_, LOCK_UN);
        const int result = ::close(descriptor_);
        descriptor_ = -1;
        // After EINTR Linux has closed the descriptor all the same.
        const SystemError error = result == 0 || errno == EINTR ? 0 : LastError();
        const SystemError earlier = sync_.TakeError();
        return earlier != 0 ? earlier : error;
    }

  private:
    int descriptor_;
    SyncHandle sync_;
};

class PosixMappedFile : public MappedFile {
  public:
    PosixMappedFile(int descriptor, std::span<std::uint8_t> bytes, SyncHandle sync)
        : descriptor_(descriptor), bytes_(bytes), sync_(std::move(sync)), guard_(bytes) {}
    ~PosixMappedFile() override {
        guard_.Release();
        ::munmap(bytes_.data(), bytes_.size());
        (void)::flock(descriptor_, LOCK_UN);
        ::close(descriptor_);
    }
    PosixMappedFile(const PosixMappedFile&) = delete;
    PosixMappedFile& operator=(const PosixMappedFile&) = delete;

    std::span<std::uint8_t> Bytes() override { return bytes_; }

    void BeginFlush() override {
        if (guard_.IsLost()) return;
        // A sync of the file covers the pages that were stored to.
        if (const SystemError error = sync_.TakeError()) Trace("journal sync failed: %u", error);
        sync_.Begin(descriptor_);
    }

  private:
    int descriptor_;
    std::span<std::uint8_t> bytes_;
    SyncHandle sync_;
    MappingGuard guard_;
};

/// True when the open file is still the one of that name.
bool IsNamed(const struct stat& opened, const std::string& nativePath) {
    struct stat named {};
    return ::stat(nativePath.c_str(), &named) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

/// Gives an empty file its size on the medium, so that storing to the mapping cannot fail later.
SystemError Allocate(int descriptor, std::size_t bytes) {
    const int error = ::posix_fallocate(descriptor, 0, static_cast<off_t>(bytes));
    return static_cast<SystemError>(error);
}

}  // namespace

SystemError PosixStorage::Open(const Text& path, const OpenMode& mode,
                               std::unique_ptr<StorageFile>& file) {
    const auto giveUp = std::chrono::steady_clock::now() + kLongestWait;
    for (;;) {
        const SystemError error = OpenOnce(path, mode, file);
        if (error != EBUSY || !mode.waits || std::chrono::steady_clock::now() >= giveUp)
            return error;
        std::this_thread::sleep_for(kWaitStep);
    }
}

SystemError PosixStorage::OpenOnce(const Text& path, const OpenMode& mode,
                                   std::unique_ptr<StorageFile>& file) {
    int flags = O_CLOEXEC | (mode.access == Access::kRead    ? O_RDONLY
                             : mode.access == Access::kWrite ? O_WRONLY
                                                             : O_RDWR);
    if (mode.disposition != Disposition::kOpenExisting) flags |= O_CREAT;
    const std::string native = NativePath(path);
    const bool creates =
        mode.disposition != Disposition::kOpenExisting && ::access(native.c_str(), F_OK) != 0;
    const int descriptor = ::open(native.c_str(), flags, 0666);
    if (descriptor < 0) return LastError();
    auto opened = std::make_unique<PosixFile>(
        descriptor, SyncHandle(sync_, descriptor, mode.access != Access::kRead,
                               creates ? FolderToSync(native) : std::string()));
    const bool writes = mode.access != Access::kRead;
    // Some network file systems know no locks; recording there must still work.
    if (writes && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return EBUSY;
    struct stat info {};
    if (::fstat(descriptor, &info) != 0) return LastError();
    if (S_ISDIR(info.st_mode)) return EISDIR;
    if (writes) {
        // Whoever held it may just have given it another name.
        if (!IsNamed(info, native)) return EBUSY;
        // Emptied only once locked: a file that somebody is writing is not destroyed.
        if (mode.disposition == Disposition::kCreateAlways && info.st_size > 0 &&
            ::ftruncate(descriptor, 0) != 0)
            return LastError();
    }
    file = std::move(opened);
    return 0;
}

SystemError PosixStorage::Map(const Text& path, std::size_t bytes,
                              std::unique_ptr<MappedFile>& file) {
    const std::string native = NativePath(path);
    const int descriptor = ::open(native.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0) return LastError();
    const auto fail = [&](SystemError error, bool ours) {
        if (ours) ::unlink(native.c_str());
        ::close(descriptor);
        return error;
    };
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return fail(EBUSY, false);
    struct stat info {};
    if (::fstat(descriptor, &info) != 0 || info.st_nlink == 0)
        return fail(EBUSY, false);  // whoever held it has just removed it
    if (::ftruncate(descriptor, 0) != 0) return fail(LastError(), false);
    if (const SystemError error = Allocate(descriptor, bytes)) return fail(error, true);
    void* const memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED) return fail(LastError(), true);
    file = std::make_unique<PosixMappedFile>(
        descriptor, std::span(static_cast<std::uint8_t*>(memory), bytes),
        SyncHandle(sync_, descriptor, true, FolderToSync(native)));
    return 0;
}

bool PosixStorage::Exists(const Text& path) {
    return ::access(NativePath(path).c_str(), F_OK) == 0;
}

SystemError PosixStorage::Delete(const Text& path) {
    return ::unlink(NativePath(path).c_str()) == 0 ? 0 : LastError();
}

SystemError PosixStorage::Rename(const Text& from, const Text& to) {
    const std::string source = NativePath(from);
    const std::string target = NativePath(to);
    struct stat replaced {};
    if (::stat(target.c_str(), &replaced) == 0) {
        // Fails where the file system knows no rights.
        (void)::chmod(source.c_str(), replaced.st_mode & 0777);
    }
    if (::rename(source.c_str(), target.c_str()) != 0) return LastError();
    SyncFolder(FolderOf(target));
    return 0;
}

SystemError PosixStorage::LastWriteTime(const Text& path, FileTime& time) {
    struct stat info {};
    if (::stat(NativePath(path).c_str(), &info) != 0) return LastError();
    time = FileTime(std::chrono::seconds(info.st_mtim.tv_sec) +
                    std::chrono::nanoseconds(info.st_mtim.tv_nsec));
    return 0;
}

SystemError PosixStorage::SetLastWriteTime(const Text& path, FileTime time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    struct timespec times[2] = {};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = seconds.time_since_epoch().count();
    times[1].tv_nsec = (time - seconds).count();
    return ::utimensat(AT_FDCWD, NativePath(path).c_str(), times, 0) == 0 ? 0 : LastError();
}

SystemError PosixStorage::FreeBytes(const Text& folder, std::uint64_t& bytes) {
    struct statvfs info {};
    const std::string path = folder.empty() ? "." : NativePath(folder);
    if (::statvfs(path.c_str(), &info) != 0) return LastError();
    bytes = static_cast<std::uint64_t>(info.f_bavail) * info.f_frsize;
    return 0;
}

SystemError PosixStorage::CreateFolder(const Text& path) {
    std::error_code error;
    std::filesystem::create_directories(NativePath(path), error);
    return static_cast<SystemError>(error.value());
}

SystemError PosixStorage::ListFiles(const Text& folder, std::vector<Text>& names) {
    std::error_code error;
    const std::string path = folder.empty() ? "." : NativePath(folder);
    names.clear();
    for (std::filesystem::directory_iterator entry(path, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored))
            names.push_back(FromUtf8(entry->path().filename().string()));
    }
    std::sort(names.begin(), names.end());
    return static_cast<SystemError>(error.value());
}

Text PosixStorage::ErrorText(SystemError error) {
    const int number = static_cast<int>(error);
    const std::string text = std::generic_category().message(number);
    // In every language the C library puts the number behind its text for one that it lacks.
    return text.ends_with(" " + std::to_string(number)) ? Text() : FromUtf8(text);
}

}  // namespace orma
