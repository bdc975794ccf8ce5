#pragma once

#include <memory>
#include <string>

#include "stream/jstream.h"
#include "stream/smtp_account.h"

namespace orma {

/// A blocking TCP client with a read time-out of 10 s, IPv4. One thread at a time.
class JStreamSocket : public JStream {
  public:
    static constexpr unsigned kReadMilliseconds = 10'000;

    /// `services` outlive the stream.
    explicit JStreamSocket(const MailServices& services) : services_(services) {}

    /// Connects and returns 0, or 1 when that fails; an earlier connection is closed first. A host
    /// that begins with a letter is a name (one line feed at its end is dropped), anything else a
    /// dotted address, accepted only when it can be traced back to a name.
    [[nodiscard]] int Connect(const Text& host, int port);

    /// Goes on in TLS; a failure closes the connection. `host` as it was connected to.
    [[nodiscard]] TlsFailure Secure(const Text& host, const Text& caFile);

    void Close();

    /// What one receive yields. Without bytes in time, at an error and at the end of the
    /// connection the whole buffer is zeros and `good` is cleared.
    void Read(void* buffer, std::uint32_t count) override;

    /// Read that waits at most `milliseconds`.
    void ReadWithin(void* buffer, std::uint32_t count, unsigned milliseconds);

    /// Counts the bytes as sent and sends them all; an error clears `good`.
    void Write(const void* buffer, std::uint32_t count) override;

    [[nodiscard]] bool IsOpen() const { return connection_ != nullptr; }

    /// True when Patience ended what was last tried.
    [[nodiscard]] bool WasGivenUp() const { return givenUp_; }

  private:
    [[nodiscard]] bool Note(const NetworkResult& result);

    const MailServices& services_;
    std::unique_ptr<TcpConnection> connection_;
    bool givenUp_ = false;
};

}  // namespace orma
