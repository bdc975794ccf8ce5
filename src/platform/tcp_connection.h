#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "base/bytes.h"
#include "platform/patience.h"
#include "platform/storage.h"

namespace orma {

/// How an operation on the network ended.
struct NetworkResult {
    enum class End {
        kDone,
        kTimedOut,  // nothing came in time
        kClosed,    // the other side ended the connection
        kGivenUp,   // Patience was at its end
        kNoSocket,  // the system has none to give; `error` says why
        kFailed,    // anything else; `error` may tell
    };
    End end = End::kDone;
    SystemError error = 0;  // the system's number, where it has one

    [[nodiscard]] bool Ok() const { return end == End::kDone; }
};

/// An IPv4 address, most significant byte first.
using Ipv4Address = std::array<std::uint8_t, 4>;

/// One TCP connection; its destructor closes it. Blocking, one thread at a time; whoever waits asks
/// the Patience of its making.
class TcpConnection {
  public:
    virtual ~TcpConnection() = default;

    /// Waits at most `milliseconds` for bytes and takes what is there, at most into.size(); `got`
    /// is at least 1 when this is done. A connection that the other side ended is kClosed.
    [[nodiscard]] virtual NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got,
                                                unsigned milliseconds) = 0;

    /// Sends all bytes. The only bound is that the other side takes something within 3 minutes
    /// (RFC 5321, 4.5.3.2.5): a slow line is no broken one.
    [[nodiscard]] virtual NetworkResult Send(ByteSpan bytes) = 0;
};

/// Finds hosts and makes connections to them. One thread at a time.
class TcpConnections {
  public:
    virtual ~TcpConnections() = default;

    /// The first IPv4 address of a host name. The resolver's own time is the only limit.
    [[nodiscard]] virtual NetworkResult FindName(const std::string& name, Patience& patience,
                                                 Ipv4Address& address) = 0;

    /// Reads a dotted address, which counts only when it can be traced back to a host name.
    [[nodiscard]] virtual NetworkResult FindAddress(const std::string& dotted, Patience& patience,
                                                    Ipv4Address& address) = 0;

    /// Connects; no time-out but the system's. `patience` outlives the connection.
    [[nodiscard]] virtual NetworkResult Connect(const Ipv4Address& address, std::uint16_t port,
                                                Patience& patience,
                                                std::unique_ptr<TcpConnection>& connection) = 0;
};

}  // namespace orma
