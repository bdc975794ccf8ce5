#include "stream/jstream_file.h"

#include <cerrno>
#include <cstring>
#include <limits>

#include "base/trace.h"

namespace orma {
namespace {

constexpr OpenMode kReadMode{Access::kRead, Share::kRead, Disposition::kOpenExisting, 0};
constexpr OpenMode kWriteMode{Access::kWrite, Share::kNone, Disposition::kCreateAlways, 0};
constexpr OpenMode kInTurnMode{Access::kWrite, Share::kNone, Disposition::kCreateAlways, 0, true};
constexpr OpenMode kCreateMode{Access::kWrite, Share::kRead, Disposition::kCreateAlways, 0};
constexpr OpenMode kAppendMode{Access::kWrite, Share::kRead, Disposition::kOpenAlways, 0};

// Positions are 32-bit everywhere; what lies beyond is reported as the largest.
std::uint32_t To32(std::uint64_t bytes) {
    constexpr std::uint64_t kLargest = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(bytes < kLargest ? bytes : kLargest);
}

}  // namespace

JStreamFile::JStreamFile(FileServices services) : services_(services) {}

JStreamFile::JStreamFile(FileServices services, const Text& path, bool forReading)
    : services_(services) {
    Open(path, forReading);
}

JStreamFile::JStreamFile(FileServices services, const Text& path, const OpenMode& mode)
    : services_(services) {
    Open(path, mode);
}

JStreamFile::~JStreamFile() {
    Close();
}

void JStreamFile::Fail(const Text& operation, SystemError error) {
    status &= ~kGood;
    services_.report.ReportSystemFailure(operation, error);
}

void JStreamFile::OpenReporting(const Text& path, const OpenMode& mode, const Text& noNameText,
                                const Text& failureText) {
    Close();
    if (path.empty()) {
        status &= ~kGood;
        services_.report.ShowError(noNameText);
        return;
    }
    const SystemError error = services_.storage.Open(path, mode, handle_);
    if (error != 0) {
        Fail(failureText, error);
        return;
    }
    status = kGood | kOpen | (mode.access == Access::kRead ? kReading : 0U);
}

void JStreamFile::Open(const Text& path, bool forReading) {
    OpenReporting(path, forReading ? kReadMode : kWriteMode, u"CreateFile no filename,read2",
                  u"Cannot open file : " + path);
}

void JStreamFile::Open(const Text& path, const OpenMode& mode) {
    OpenReporting(path, mode, u"CreateFile no filename,read", u"CreateFile");
}

void JStreamFile::OpenInTurn(const Text& path) {
    OpenReporting(path, kInTurnMode, u"CreateFile no filename,read2",
                  u"Cannot open file : " + path);
}

void JStreamFile::OpenForCreate(const Text& path) {
    OpenReporting(path, kCreateMode, u"CreateFile no filename at append",
                  u"Cannot open file : " + path);
    Close();
}

SystemError JStreamFile::OpenAtEnd(const Text& path, std::uint64_t& size) {
    if (handle_) Trace("Append file not closed");
    Close();
    status &= ~(kReading | kAtEnd);
    SystemError error = services_.storage.Open(path, kAppendMode, handle_);
    if (error == 0) error = handle_->Seek(0, SeekFrom::kEnd, size);
    if (error == 0) {
        status |= kGood | kOpen;
        return 0;
    }
    Trace("Append file not opened");
    handle_.reset();
    status &= ~kGood;
    return error;
}

std::uint32_t JStreamFile::OpenForAppend(const Text& path) {
    std::uint64_t size = 0;
    return OpenAtEnd(path, size) == 0 ? To32(size) : 0;
}

bool JStreamFile::OpenForBlock(const Text& path) {
    if (!Has(kGood)) return false;
    std::uint64_t size = 0;
    const SystemError error = OpenAtEnd(path, size);
    if (error != 0) Fail(u"WriteFile", error);
    return error == 0;
}

void JStreamFile::AppendBlock(const Text& path, const void* buffer, std::uint32_t count) {
    if (!OpenForBlock(path)) return;
    Write(buffer, count);
    BeginFlush();
    Close();
}

std::uint32_t JStreamFile::GetSize() {
    std::uint64_t size = 0;
    if (!handle_) return 0;
    if (const SystemError error = handle_->Size(size); error != 0) {
        Fail(u"GetFileSize", error);
        return 0;
    }
    return To32(size);
}

void JStreamFile::Move(std::int64_t offset, SeekFrom origin) {
    if (!IsOpen()) return;
    std::uint64_t position = 0;
    if (const SystemError error = handle_->Seek(offset, origin, position); error != 0)
        Fail(u"Position", error);
}

void JStreamFile::SetPosition(std::int32_t offset) {
    const auto far = static_cast<std::uint32_t>(offset);
    Move(offset < 0 && far <= GetSize() ? std::int64_t{far} : offset, SeekFrom::kStart);
}

void JStreamFile::Skip(std::int32_t offset) {
    Move(offset, SeekFrom::kCurrent);
}

std::uint32_t JStreamFile::GetPosition() {
    if (!IsOpen()) return 0;
    std::uint64_t position = 0;
    if (const SystemError error = handle_->Seek(0, SeekFrom::kCurrent, position); error != 0) {
        Fail(u"Position", error);
        return 0;
    }
    return To32(position);
}

void JStreamFile::Read(void* buffer, std::uint32_t count) {
    if (!Has(kGood | kOpen | kReading) || count == 0) return;
    auto* bytes = static_cast<std::uint8_t*>(buffer);
    std::size_t got = 0;
    if (const SystemError error = handle_->Read({bytes, count}, got); error != 0) {
        std::memset(bytes, 0, count);
        Fail(u"ReadFile", error);
        return;
    }
    if (got < count) {
        std::memset(bytes + got, 0, count - got);
        Trace("EOF nr %d n %d", static_cast<int>(got), static_cast<int>(count));
        status |= kAtEnd;
    }
}

void JStreamFile::ReadHeld(void* buffer, std::uint32_t count) {
    status &= ~kAtEnd;
    Read(buffer, count);
    if (Has(kGood | kAtEnd)) Fail(u"ReadFile", EIO);
}

void JStreamFile::Write(const void* buffer, std::uint32_t count) {
    if (!IsOpen() || Has(kReading)) return;
    std::size_t written = 0;
    const SystemError error =
        handle_->Write({static_cast<const std::uint8_t*>(buffer), count}, written);
    if (error != 0 || written < count) Fail(u"WriteFile", error);
}

void JStreamFile::Truncate(std::uint32_t bytes) {
    if (!IsOpen()) return;
    if (const SystemError error = handle_->Truncate(bytes); error != 0)
        Fail(u"SetEndOfFile", error);
}

void JStreamFile::Flush() {
    if (!IsOpen()) return;
    if (const SystemError error = handle_->Flush(); error != 0) Fail(u"FlushFileBuffers", error);
}

void JStreamFile::BeginFlush() {
    if (IsOpen()) handle_->BeginFlush();
}

void JStreamFile::Close() {
    if (!handle_) return;
    const SystemError error = handle_->Close();
    handle_.reset();
    status &= ~kOpen;
    if (error != 0 && !Has(kReading)) Fail(u"WriteFile", error);
}

}  // namespace orma
