#pragma once

#include <memory>

#include "platform/storage.h"
#include "report/error_reporter.h"
#include "stream/jstream.h"

namespace orma {

/// What every file stream needs: where files are and where failures go. Both outlive the stream.
struct FileServices {
    Storage& storage;
    ErrorReporter& report;
};

/// A local file as a stream. Failures clear `good`, are reported once with a fixed text and leave
/// the stream inert until the next open. Every open closes a held handle first. One thread at a
/// time.
class JStreamFile : public JStream {
  public:
    /// A closed stream.
    explicit JStreamFile(FileServices services);

    /// Opens for reading (the file must exist; others may read) or for writing (created or
    /// emptied; not shared).
    JStreamFile(FileServices services, const Text& path, bool forReading);

    /// Opens with explicit parameters; `reading` is set exactly when the access is reading.
    JStreamFile(FileServices services, const Text& path, const OpenMode& mode);

    ~JStreamFile() override;
    JStreamFile(const JStreamFile&) = delete;
    JStreamFile& operator=(const JStreamFile&) = delete;

    /// In a recording of more than 2 GiB an offset that wrapped below 0 means the place it came
    /// from; elsewhere it lies before the start and fails.
    void SetPosition(std::int32_t offset) override;
    [[nodiscard]] std::uint32_t GetPosition() override;
    void Skip(std::int32_t offset) override;

    /// A short read is no failure: the rest of the buffer becomes zeros and `atEnd` is set.
    void Read(void* buffer, std::uint32_t count) override;
    void Write(const void* buffer, std::uint32_t count) override;

    /// The two open modes of the constructors, for a stream that is reused.
    void Open(const Text& path, bool forReading);
    void Open(const Text& path, const OpenMode& mode);

    /// Opens for writing as the constructor does, but waits up to two seconds for another writer of
    /// the file to be done.
    void OpenInTurn(const Text& path);

    /// Creates or empties the file and closes it again: afterwards `good` is set, `open` clear.
    void OpenForCreate(const Text& path);

    /// Opens for writing at the end, creating a missing file; returns the size in bytes. A failure
    /// is traced and clears `good`.
    std::uint32_t OpenForAppend(const Text& path);

    /// Opens for one more block at the end of a file that was good so far. False on a failed
    /// stream, and when the file cannot be opened, which is reported as "WriteFile": the block is
    /// not there, whatever the reason.
    [[nodiscard]] bool OpenForBlock(const Text& path);

    /// Appends one block and closes the file, so that the block is in the file once this returns,
    /// and soon on the medium. Fails as OpenForBlock does.
    void AppendBlock(const Text& path, const void* buffer, std::uint32_t count);

    [[nodiscard]] bool IsOpen() const { return Has(kGood | kOpen); }

    /// The file's size in bytes; 0 when it is not open, or when it cannot be measured, which clears
    /// `good` and reports "GetFileSize": a file of unknown size must not pass for an empty one.
    [[nodiscard]] std::uint32_t GetSize();

    /// As Read, of bytes that the file was found to hold: fewer are a failure, reported as
    /// "ReadFile". Somebody has cut the file since, and zeros must not pass for what it held.
    void ReadHeld(void* buffer, std::uint32_t count);

    /// Cuts the file at `bytes`; a failure clears `good` and reports "SetEndOfFile".
    void Truncate(std::uint32_t bytes);

    /// Returns once what was written is on the medium; a failure clears `good` and reports
    /// "FlushFileBuffers".
    void Flush();

    /// Starts to bring what was written to the medium and returns at once; a failure shows at a
    /// later write, flush or close.
    void BeginFlush();

    /// Closes the handle if one is held; a write that the system could only now refuse clears
    /// `good` and is reported as "WriteFile".
    void Close();

  protected:
    [[nodiscard]] const FileServices& Services() const { return services_; }

  private:
    void OpenReporting(const Text& path, const OpenMode& mode, const Text& noNameText,
                       const Text& failureText);
    [[nodiscard]] SystemError OpenAtEnd(const Text& path, std::uint64_t& size);
    void Move(std::int64_t offset, SeekFrom origin);
    void Fail(const Text& operation, SystemError error);

    FileServices services_;
    std::unique_ptr<StorageFile> handle_;
};

}  // namespace orma
