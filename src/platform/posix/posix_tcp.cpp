#include "platform/posix/posix_tcp.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/posix/host_lookup.h"

namespace orma {
namespace {

using SteadyClock = std::chrono::steady_clock;
using End = NetworkResult::End;

constexpr std::chrono::milliseconds kSlice{50};  // between two questions to Patience
constexpr std::chrono::minutes kStalledSend{3};  // RFC 5321, 4.5.3.2.5: data block

NetworkResult LastError() {
    return {End::kFailed, static_cast<SystemError>(errno)};
}

/// A socket's number; closes it.
class Socket {
  public:
    explicit Socket(int number) : number_(number) {}
    ~Socket() {
        if (number_ >= 0) ::close(number_);
    }
    Socket(Socket&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Socket& operator=(Socket&&) = delete;
    [[nodiscard]] int Number() const { return number_; }

  private:
    int number_;
};

/// Waits until the socket can do what `events` (POLLIN, POLLOUT) says.
NetworkResult Await(int socket, short events, SteadyClock::time_point deadline,
                    Patience& patience) {
    while (true) {
        if (!patience.GoOn()) return {End::kGivenUp};
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
        if (left.count() <= 0) return {End::kTimedOut};
        pollfd wait{.fd = socket, .events = events, .revents = 0};
        const int ready = ::poll(&wait, 1, static_cast<int>(std::min(left, kSlice).count()));
        if (ready > 0) return {};
        if (ready < 0 && errno != EINTR) return LastError();
    }
}

class PosixTcpConnection : public TcpConnection {
  public:
    PosixTcpConnection(Socket socket, Patience& patience)
        : socket_(std::move(socket)), patience_(patience) {}

    NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got,
                          unsigned milliseconds) override {
        got = 0;
        const auto deadline = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
        while (true) {
            const NetworkResult waited = Await(socket_.Number(), POLLIN, deadline, patience_);
            if (!waited.Ok()) return waited;
            const ssize_t count = ::recv(socket_.Number(), into.data(), into.size(), 0);
            if (count == 0) return {End::kClosed};
            if (count > 0) {
                got = static_cast<std::size_t>(count);
                return {};
            }
            if (errno != EINTR && errno != EAGAIN) return LastError();
        }
    }

    NetworkResult Send(ByteSpan bytes) override {
        while (!bytes.empty()) {
            const ssize_t count =
                ::send(socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count > 0) {
                bytes = bytes.subspan(static_cast<std::size_t>(count));
                continue;
            }
            if (errno != EINTR && errno != EAGAIN) return LastError();
            const NetworkResult waited =
                Await(socket_.Number(), POLLOUT, SteadyClock::now() + kStalledSend, patience_);
            if (!waited.Ok()) return waited;
        }
        return {};
    }

  private:
    Socket socket_;
    Patience& patience_;
};

}  // namespace

NetworkResult PosixTcpConnections::FindName(const std::string& name, Patience& patience,
                                            Ipv4Address& address) {
    return LookUpName(name, patience, address);
}

NetworkResult PosixTcpConnections::FindAddress(const std::string& dotted, Patience& patience,
                                               Ipv4Address& address) {
    // The system would overlook what stands behind a blank or a line feed.
    if (dotted.find_first_not_of("0123456789.") != std::string::npos) return {End::kFailed};
    const in_addr_t number = ::inet_addr(dotted.c_str());
    if (number == INADDR_NONE) return {End::kFailed};
    std::memcpy(address.data(), &number, address.size());
    return LookUpNameOf(address, patience);
}

NetworkResult PosixTcpConnections::Connect(const Ipv4Address& address, std::uint16_t port,
                                           Patience& patience,
                                           std::unique_ptr<TcpConnection>& connection) {
    Socket socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (socket.Number() < 0) return {End::kNoSocket, static_cast<SystemError>(errno)};
    // A dialogue of short lines would otherwise wait for the other side's delayed acknowledgements.
    const int yes = 1;
    (void)::setsockopt(socket.Number(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));

    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    std::memcpy(&to.sin_addr, address.data(), address.size());
    if (::connect(socket.Number(), reinterpret_cast<const sockaddr*>(&to), sizeof(to)) != 0) {
        if (errno != EINPROGRESS && errno != EINTR) return LastError();
        const NetworkResult waited =
            Await(socket.Number(), POLLOUT, SteadyClock::time_point::max(), patience);
        if (!waited.Ok()) return waited;
        int error = 0;
        socklen_t size = sizeof(error);
        if (::getsockopt(socket.Number(), SOL_SOCKET, SO_ERROR, &error, &size) != 0)
            return LastError();
        if (error != 0) return {End::kFailed, static_cast<SystemError>(error)};
    }
    connection = std::make_unique<PosixTcpConnection>(std::move(socket), patience);
    return {};
}

}  // namespace orma
