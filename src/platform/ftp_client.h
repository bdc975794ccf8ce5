#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "base/bytes.h"
#include "base/text.h"
#include "platform/patience.h"
#include "platform/storage.h"
#include "platform/transport_security.h"

namespace orma {

/// Codes of FTP operations, in the range of internet operations (12000 to 12174) that the error
/// reporter knows.
enum FtpCode : SystemError {
    kFtpDone = 0,
    kFtpTimeout = 12002,            // nobody answered, or no byte moved, for as long as is waited
    kFtpRefused = 12003,            // the server said no: FtpResult holds its words
    kFtpBadName = 12005,            // a name that no command can carry
    kFtpNameNotResolved = 12007,    // the host name leads nowhere
    kFtpWrongPassword = 12014,      // user name or password cannot be right
    kFtpCancelled = 12017,          // Patience was over: the user's own wish, nothing to report
    kFtpWrongState = 12019,         // not connected, or no file open
    kFtpCannotConnect = 12029,      // nobody listens there
    kFtpConnectionLost = 12031,     // it was there and broke off
    kFtpCertificateDate = 12037,    // the certificate has run out or is not valid yet
    kFtpCertificateName = 12038,    // the certificate belongs to another host
    kFtpCertificateIssuer = 12045,  // nobody trusted has signed the certificate
    kFtpNotSecure = 12157,          // no TLS to be had
};

/// How an FTP operation ended. `reply` is what the server itself said where it refused (all lines
/// of a longer reply, at most 799 characters, without control characters or the password), and
/// `replyNumber` its three-digit number (RFC 959, 4.2); empty and 0 otherwise.
struct FtpResult {
    SystemError code = kFtpDone;
    int replyNumber = 0;
    Text reply;

    [[nodiscard]] bool Ok() const { return code == kFtpDone; }
};

/// Where and how to log in.
struct FtpTarget {
    Text host{};
    int port = 21;  // 0: the port that is usual for the kind of protection
    Text user{};
    Text password{};
    bool passive = false;  // who opens data connections: this side (PASV) or, only in clear text,
                           // the server (PORT)
    TransportSecurity security = TransportSecurity::kNone;
    Text caFile{};  // PEM file of the trusted issuers; empty: those of the system
    std::uint32_t connectTimeoutMs = 0;  // 0: as long as the adapter waits of itself
};

/// One logged-in connection to an FTP server with at most one file open on it, always binary.
///
/// Every operation blocks the calling thread, which is the same one for all (the UI thread for a
/// publication). While it waits it asks the Patience it was made with, at least every 50 ms, and
/// gives up with kFtpCancelled when that says so; nothing waits for ever. A failed operation on a
/// file ends the transfer: what follows until CloseFile fails as well. A transfer that began is
/// never started again; but when the server has dropped an idle connection, the next operation
/// logs in once more by itself. A TLS handshake may be waited for in one piece, at most as long as
/// for a connection; from another thread Interrupt ends that too.
class FtpClient {
  public:
    /// Drops the connection; an open file stays on the server as far as it got.
    virtual ~FtpClient() = default;

    /// Logs in; drops a connection that is held. The password is never sent in clear text when
    /// `target.security` asks for protection.
    [[nodiscard]] virtual FtpResult Connect(const FtpTarget& target) = 0;

    /// True from a successful Connect until Disconnect, whatever the network does meanwhile.
    [[nodiscard]] virtual bool IsConnected() const = 0;

    /// Says good-bye where that costs no waiting, and closes. An open file is abandoned.
    virtual void Disconnect() = 0;

    /// Asks the server to begin the next file at `offset` bytes (REST). Only 350 is consent:
    /// anything else the server says is kFtpRefused, and the next file begins at 0. The consent
    /// itself is no promise that the store is accepted. The offset is said once more immediately
    /// before that file is opened, which fails without touching the file if it is then refused.
    [[nodiscard]] virtual FtpResult Restart(std::uint64_t offset) = 0;

    /// Size of a remote file in bytes, 0 when there is no such file (550); none, with success,
    /// where the server cannot tell sizes. One that cannot tell now (4xx) is kFtpRefused. Not while
    /// a file is open.
    [[nodiscard]] virtual FtpResult RemoteSize(const Text& path,
                                               std::optional<std::uint64_t>& bytes) = 0;

    /// Goes to `folder`, written like the path of a file, and back to the log-in folder; empty is
    /// the log-in folder itself. kFtpRefused where there is none, or none for this user. Not while
    /// a file is open. A client that is there for uploads alone may be unable to: kFtpWrongState.
    [[nodiscard]] virtual FtpResult LookForFolder(const Text& folder) {
        return {folder.empty() ? kFtpDone : kFtpWrongState, 0, {}};
    }

    /// Opens the remote file at `path`, relative to the log-in folder unless it begins with '/'.
    /// For writing it is created, or emptied unless Restart has said where it goes on.
    [[nodiscard]] virtual FtpResult OpenFile(const Text& path, Access access) = 0;

    /// Reads into.size() bytes; fewer, with success, only at the end of the file.
    [[nodiscard]] virtual FtpResult Read(std::span<std::uint8_t> into, std::size_t& got) = 0;

    /// Returns once the system has taken all bytes. That they arrived is not known: bytes under
    /// way, a few hundred KB, are lost with the connection. Only CloseFile or RemoteSize can tell.
    [[nodiscard]] virtual FtpResult Write(ByteSpan from) = 0;

    /// Ends the file. After writing, success means that the server confirmed it whole (226 or 250),
    /// for which is waited. A reader may close before the end of the file. After a failure of the
    /// transfer: that failure.
    [[nodiscard]] virtual FtpResult CloseFile() = 0;

    /// Lets the operation that waits, if one does, fail soon, whether it asks its Patience or not.
    /// The connection is broken then. From any thread, while the client exists.
    virtual void Interrupt() {}
};

/// Makes clients; the port that a program is composed with.
class FtpClients {
  public:
    virtual ~FtpClients() = default;

    /// A client that is not connected yet. `patience` outlives it. Null, with a code in `result`,
    /// when the system has no room for it.
    [[nodiscard]] virtual std::unique_ptr<FtpClient> Create(Patience& patience,
                                                            FtpResult& result) = 0;
};

}  // namespace orma
