#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/bytes.h"
#include "base/text.h"
#include "platform/date_time.h"

namespace orma {

/// A system error number (errno or GetLastError); 0 means success.
using SystemError = std::uint32_t;

enum class Access { kRead, kWrite, kReadWrite };

/// What other openers may do meanwhile. Two writers of one file are refused on every system; that
/// readers are kept out (kNone) holds only where the system enforces it.
enum class Share { kNone, kRead };

enum class Disposition {
    kOpenExisting,  // fails when the file is missing
    kCreateAlways,  // creates or empties
    kOpenAlways,    // creates when missing, keeps what is there
};

struct OpenMode {
    Access access = Access::kRead;
    Share share = Share::kRead;
    Disposition disposition = Disposition::kOpenExisting;
    std::uint32_t attributes = 0;  // carried for systems that know file attributes
    bool waits = false;            // for another writer to be done, at most two seconds
};

enum class SeekFrom { kStart, kCurrent, kEnd };

/// One open file; its destructor closes it. Blocking, one thread at a time.
class StorageFile {
  public:
    virtual ~StorageFile() = default;

    /// Reads up to into.size() bytes; fewer only at the end of the file.
    [[nodiscard]] virtual SystemError Read(std::span<std::uint8_t> into, std::size_t& got) = 0;

    /// Writes all bytes, or says how many were written before the failure.
    [[nodiscard]] virtual SystemError Write(ByteSpan from, std::size_t& written) = 0;

    /// Moves to `offset` bytes from the origin; a place before the start is an error.
    [[nodiscard]] virtual SystemError Seek(std::int64_t offset, SeekFrom origin,
                                           std::uint64_t& position) = 0;

    [[nodiscard]] virtual SystemError Size(std::uint64_t& bytes) = 0;

    /// Cuts or extends the file to `bytes`; the position stays.
    [[nodiscard]] virtual SystemError Truncate(std::uint64_t bytes) = 0;

    /// Returns once the file's data is on the medium.
    [[nodiscard]] virtual SystemError Flush() = 0;

    /// Starts to bring what was written so far to the medium and returns at once. What goes wrong
    /// there is the error of a later Write, Flush or Close.
    virtual void BeginFlush() = 0;

    /// Closes and reports what the system kept back until now. Later calls fail.
    [[nodiscard]] virtual SystemError Close() = 0;
};

/// A file that lies in memory: what is stored there is in the file without any call, so it outlives
/// the process whatever ends it. Its destructor unmaps and closes. One thread at a time.
class MappedFile {
  public:
    virtual ~MappedFile() = default;

    /// The bytes of the file, writable; valid as long as the object lives.
    [[nodiscard]] virtual std::span<std::uint8_t> Bytes() = 0;

    /// Starts to bring what was stored so far to the medium and returns at once. A failure is only
    /// traced: who needs certainty writes to a StorageFile.
    virtual void BeginFlush() = 0;
};

/// Files and volumes. Paths are native or use '/', relative ones start at the current folder.
/// Blocking, UI thread.
class Storage {
  public:
    virtual ~Storage() = default;

    [[nodiscard]] virtual SystemError Open(const Text& path, const OpenMode& mode,
                                           std::unique_ptr<StorageFile>& file) = 0;

    /// Creates or empties the file at `path`, gives it `bytes` zero bytes that have their place on
    /// the medium, and maps it. Like a file open for writing it is refused to other writers. Fails
    /// where the medium is full or cannot map; then no file of `bytes` bytes is left behind.
    [[nodiscard]] virtual SystemError Map(const Text& path, std::size_t bytes,
                                          std::unique_ptr<MappedFile>& file) = 0;

    [[nodiscard]] virtual bool Exists(const Text& path) = 0;

    /// Removes a file, also one that is open here for writing; a missing one is an error.
    [[nodiscard]] virtual SystemError Delete(const Text& path) = 0;

    /// Moves a file within its volume, also one that is open here for writing, replacing the target
    /// in one step, and returns once the new name is on the medium. A file that takes another's
    /// place takes over who may read and write it: settings hold passwords.
    [[nodiscard]] virtual SystemError Rename(const Text& from, const Text& to) = 0;

    [[nodiscard]] virtual SystemError LastWriteTime(const Text& path, FileTime& time) = 0;
    [[nodiscard]] virtual SystemError SetLastWriteTime(const Text& path, FileTime time) = 0;

    /// Bytes that this user may still write on the volume of `folder` (empty: the current one).
    [[nodiscard]] virtual SystemError FreeBytes(const Text& folder, std::uint64_t& bytes) = 0;

    /// Creates a folder and those above it; one that exists is success.
    [[nodiscard]] virtual SystemError CreateFolder(const Text& path) = 0;

    /// The names (without folder) of the files in a folder, sorted.
    [[nodiscard]] virtual SystemError ListFiles(const Text& folder, std::vector<Text>& names) = 0;

    /// The system's message text for an error number, without a line end; empty when it has none.
    [[nodiscard]] virtual Text ErrorText(SystemError error) = 0;
};

}  // namespace orma
