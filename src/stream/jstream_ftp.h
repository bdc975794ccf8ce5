#pragma once

#include <memory>
#include <optional>

#include "stream/ftp_session.h"
#include "stream/jstream.h"

namespace orma {

/// A remote file as a stream, on a session of its own. Failures clear `good`, are reported once
/// under the operation's name and leave the stream inert until the next open; a user's Cancel
/// clears `good` without a report. There is no position and no retry. Blocking, UI thread.
class JStreamFTP : public JStream {
  public:
    explicit JStreamFTP(FtpServices services) : services_(services) {}
    ~JStreamFTP() override { CloseAll(); }
    JStreamFTP(const JStreamFTP&) = delete;
    JStreamFTP& operator=(const JStreamFTP&) = delete;

    /// Exactly `count` bytes, or a failure: at the end of the file too the whole buffer becomes
    /// zeros, `good` is cleared and "InternetReadFile" reported.
    void Read(void* buffer, std::uint32_t count) override;

    /// Bytes written here are on their way, not stored; see CloseResult and RemoteSize.
    void Write(const void* buffer, std::uint32_t count) override;

    /// Closes everything and connects.
    void OpenWriterSession(const FtpAccount& account);

    [[nodiscard]] bool IsConnected() const {
        return session_ != nullptr && session_->IsConnected();
    }
    [[nodiscard]] bool IsOpen() const { return Has(kGood | kOpen); }

    /// Opens a remote file; one that is open is closed first. A failure to open for reading is
    /// silent, one for writing is reported as "FtpOpenFile", and a missing connection as
    /// "InternetConnect".
    void OpenRemoteFile(const Text& path, bool forReading);

    /// Ends the file; `good` stays as it is. Whether the server confirmed it: CloseResult.
    void CloseFile();

    /// Ends the file and the connection.
    void CloseAll();

    /// Breaks off: an open file is not ended, so that the server does not take a piece for the
    /// whole, and the connection goes with it.
    void Abandon();

    /// Announces that the next file goes on at `offset` bytes. True when refused, for whatever
    /// reason: then nothing is reported, and LastResult tells why.
    [[nodiscard]] bool SendResumeOffset(std::uint32_t offset);

    /// Reports what the closing of a written file failed with, as "InternetWriteFile": the quota
    /// that was full, for one. A caller that gave the file up has nothing to report.
    void ReportUnconfirmed();

    /// Size in bytes of a remote file, 0 when there is none; nothing where the server cannot tell.
    /// Closes an open file, and fails (LastResult) without a report.
    [[nodiscard]] std::optional<std::uint64_t> RemoteSize(const Text& path);

    /// How the last file was closed: success only when the server confirmed it whole;
    /// kFtpWrongState while one is open or before there was any.
    [[nodiscard]] const FtpResult& CloseResult() const { return closeResult_; }

    /// How the last operation on the server ended.
    [[nodiscard]] const FtpResult& LastResult() const { return lastResult_; }

    /// Bytes of completed writes to the file that is, or was last, open; from where it went on.
    [[nodiscard]] std::uint64_t BytesWritten() const { return bytesWritten_; }

  private:
    void Fail(const Text& operation, FtpResult result);
    void Report(const Text& operation);

    FtpServices services_;
    std::unique_ptr<FtpSession> session_;  // null: none was ever asked for, or it was closed
    bool fileOpen_ = false;
    FtpResult closeResult_{kFtpWrongState, 0, {}};
    FtpResult lastResult_;
    std::uint64_t bytesWritten_ = 0;
};

}  // namespace orma
