#pragma once

#include "platform/tcp_connection.h"

namespace orma {

/// TCP through BSD sockets. The resolver, which cannot be interrupted, runs on a thread of its own
/// that is left to itself when Patience ends first.
class PosixTcpConnections : public TcpConnections {
  public:
    [[nodiscard]] NetworkResult FindName(const std::string& name, Patience& patience,
                                         Ipv4Address& address) override;
    [[nodiscard]] NetworkResult FindAddress(const std::string& dotted, Patience& patience,
                                            Ipv4Address& address) override;
    [[nodiscard]] NetworkResult Connect(const Ipv4Address& address, std::uint16_t port,
                                        Patience& patience,
                                        std::unique_ptr<TcpConnection>& connection) override;
};

}  // namespace orma
