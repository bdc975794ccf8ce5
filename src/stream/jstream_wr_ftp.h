#pragma once

#include "stream/jstream_ftp.h"

namespace orma {

/// The path under which a file is published: folder, "/", base name, ".", extension (given without
/// its dot). Without a folder it goes to the log-in folder, with no leading "/".
[[nodiscard]] Text RemotePath(const Text& folder, const Text& baseName, const Text& extension);

/// The FTP stream of the audio writers: it knows its destination, and connects when it must.
class JStreamWrFTP : public JStreamFTP {
  public:
    /// How ResumeOpen ended.
    enum ResumeAnswer { kResumed = 0, kOffsetRefused = 1, kNoConnection = 2 };

    explicit JStreamWrFTP(FtpServices services) : JStreamFTP(services) {}

    /// The destination, and the extension of published files without its dot. Counts from the next
    /// connection on.
    void SetDestination(const FtpAccount& account, const Text& extension);

    /// Connects unless connected; false, traced, when there is still no connection.
    [[nodiscard]] bool EnsureConnected();

    /// Opens the file of this base name for writing; success shows in IsOpen. When there is no
    /// connection it only traces: OpenWriterSession has reported that.
    void OpenForWriting(const Text& baseName);

    /// Opens the file of this base name to go on at `offset` bytes: the caller hands over exactly
    /// the bytes from there. kOffsetRefused is the server's own No; a connection that broke off
    /// at the question is kNoConnection. kResumed says nothing of the open itself, which shows in
    /// IsOpen. A stream that is writable already is left as it is.
    [[nodiscard]] ResumeAnswer ResumeOpen(const Text& baseName, std::uint32_t offset);

    /// Size in bytes on the server of the file of this base name, 0 when there is none; connects if
    /// it must. Nothing where it cannot be had.
    [[nodiscard]] std::optional<std::uint64_t> PublishedSize(const Text& baseName);

  private:
    FtpAccount account_;
    Text extension_;
};

}  // namespace orma
