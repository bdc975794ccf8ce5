#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "platform/tls_connection.h"
#include "support/fake_patience.h"

namespace orma::test {

/// A server that says what a test wrote down, and everything that was said to it. Each entry of
/// `replies` is what one receive yields; an empty one is a silence; behind the last one the server
/// has hung up.
class FakeTcp : public TcpConnections {
  public:
    [[nodiscard]] NetworkResult FindName(const std::string& name, Patience& patience,
                                         Ipv4Address& address) override;
    [[nodiscard]] NetworkResult FindAddress(const std::string& dotted, Patience& patience,
                                            Ipv4Address& address) override;
    [[nodiscard]] NetworkResult Connect(const Ipv4Address& address, std::uint16_t port,
                                        Patience& patience,
                                        std::unique_ptr<TcpConnection>& connection) override;

    /// All that was sent, as one text.
    [[nodiscard]] std::string Sent() const;

    std::deque<std::string> replies;
    std::vector<std::string> sends;            // one for each send; "<TLS>" where TLS began
    std::map<std::size_t, std::string> heard;  // what was received when so much had been sent
    std::vector<std::string> lookUps;          // "name x", "address x"
    std::uint16_t port = 0;
    NetworkResult find;     // what looking up yields
    NetworkResult connect;  // what connecting yields
    NetworkResult silence{NetworkResult::End::kTimedOut};
    std::size_t failingSend = SIZE_MAX;  // from this one on, sending fails
    bool isOpen = false;
};

/// TLS that only leaves its mark, or fails as told.
class FakeTls : public TlsConnections {
  public:
    explicit FakeTls(FakeTcp& tcp) : tcp_(tcp) {}

    [[nodiscard]] TlsFailure Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer& peer,
                                    unsigned milliseconds,
                                    std::unique_ptr<TcpConnection>& secured) override;

    TlsFailure failure = TlsFailure::kNone;
    TlsPeer peer;

  private:
    FakeTcp& tcp_;
};

}  // namespace orma::test
