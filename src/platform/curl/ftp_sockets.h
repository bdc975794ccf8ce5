#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/curl/ftp_reply.h"

namespace orma {

/// The sockets of one FTP connection, to see what libcurl does not look at: during an upload it
/// watches the data connection alone. Closes none but by Close. -1 is no socket.
class FtpSockets {
  public:
    /// Opens a socket of this kind for libcurl; -1 when the system has none.
    [[nodiscard]] int Open(int family, int type, int protocol);

    /// The server has opened the data connection (active mode); libcurl closes that one itself.
    void Accepted(int socket);

    /// Closes a socket that Open made.
    void Close(int socket);

    /// Ends every connection that Open made a socket for, so that who waits there finds it dead.
    /// The one operation that any thread may call.
    void ShutDownAll();

    /// The server has spoken: the one open socket, by now, is the control connection.
    void FoundControl();

    /// The file is over; an accepted data connection is no longer there.
    void ForgetData() { data_ = -1; }

    [[nodiscard]] bool HasControl() const { return control_ >= 0; }
    [[nodiscard]] bool IsControl(int socket) const { return socket >= 0 && socket == control_; }
    [[nodiscard]] bool IsData(int socket) const { return socket >= 0 && socket == data_; }
    [[nodiscard]] int Control() const { return control_; }

    /// True when something, or the end, has come on the control connection and was not read.
    [[nodiscard]] bool ControlSpoke() const { return WaitForControl(0); }

    /// Waits so many milliseconds for that.
    [[nodiscard]] bool WaitForControl(int milliseconds) const;

    /// Reads what is left on a clear-text control connection into `reply`, waiting a moment for a
    /// final one.
    void ReadLeftOver(FtpReply& reply) const;

    /// Throws away what came on the control connection and ends it, so that libcurl finds it dead.
    void KillControl();

    /// Tells the server that all data was sent.
    void EndData();

    /// Lets the data connection end by a reset: an orderly end would make a broken-off file look
    /// complete to the server.
    void ResetData();

    /// Bytes of data that the other side has not acknowledged yet; 0 where the system cannot tell.
    [[nodiscard]] std::uint64_t DataUnderWay() const;

  private:
    std::mutex mutex_;       // nobody shuts down a number that has become another's
    std::vector<int> open_;  // changes under it
    int control_ = -1;
    int data_ = -1;
};

}  // namespace orma
