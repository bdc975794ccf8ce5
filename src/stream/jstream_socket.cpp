#include "stream/jstream_socket.h"

#include <cstring>

#include "base/trace.h"

namespace orma {
namespace {

constexpr unsigned kHandshakeMilliseconds = 30'000;

bool IsName(const std::string& host) {
    return !host.empty() &&
           ((host[0] >= 'a' && host[0] <= 'z') || (host[0] >= 'A' && host[0] <= 'Z'));
}

/// The host as it is looked up; a name that was read from a line of a file may end in its line
/// feed.
std::string HostOf(const Text& text) {
    std::string host = ToWindows1252(text);
    if (IsName(host) && host.back() == '\n') host.pop_back();
    return host;
}

}  // namespace

bool JStreamSocket::Note(const NetworkResult& result) {
    if (result.end == NetworkResult::End::kGivenUp) givenUp_ = true;
    if (!result.Ok()) status &= ~std::uint32_t{kGood};
    return result.Ok();
}

int JStreamSocket::Connect(const Text& host, int port) {
    Close();
    givenUp_ = false;
    const std::string name = HostOf(host);
    if (port < 1 || port > 65535) return 1;
    Ipv4Address address{};
    if (!Note(IsName(name) ? services_.tcp.FindName(name, services_.patience, address)
                           : services_.tcp.FindAddress(name, services_.patience, address)))
        return 1;
    const NetworkResult connected = services_.tcp.Connect(address, static_cast<std::uint16_t>(port),
                                                          services_.patience, connection_);
    if (!Note(connected)) {
        if (connected.end == NetworkResult::End::kNoSocket)
            Trace("socket: error socket");
        else
            Trace("socket: connect error %1d", static_cast<int>(connected.error));
        Close();
        return 1;
    }
    Trace("socket: connect succesfull");
    status = kGood | kOpen;
    return 0;
}

TlsFailure JStreamSocket::Secure(const Text& host, const Text& caFile) {
    if (!IsOpen()) return TlsFailure::kHandshake;
    std::unique_ptr<TcpConnection> secured;
    const TlsFailure failure = services_.tls.Secure(std::move(connection_), {HostOf(host), caFile},
                                                    kHandshakeMilliseconds, secured);
    if (failure == TlsFailure::kGivenUp) givenUp_ = true;
    if (failure != TlsFailure::kNone) {
        Close();
        return failure;
    }
    connection_ = std::move(secured);
    return TlsFailure::kNone;
}

void JStreamSocket::Close() {
    connection_.reset();
    status &= ~std::uint32_t{kOpen};
}

void JStreamSocket::Read(void* buffer, std::uint32_t count) {
    ReadWithin(buffer, count, kReadMilliseconds);
}

void JStreamSocket::ReadWithin(void* buffer, std::uint32_t count, unsigned milliseconds) {
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    std::size_t got = 0;
    const bool read = IsOpen() && Note(connection_->Receive({bytes, count}, got, milliseconds));
    if (read) return;
    std::memset(bytes, 0, count);
    status &= ~std::uint32_t{kGood};
}

void JStreamSocket::Write(const void* buffer, std::uint32_t count) {
    services_.bytesSent += count;
    const ByteSpan bytes(static_cast<const std::uint8_t*>(buffer), count);
    if (!IsOpen() || !Note(connection_->Send(bytes))) status &= ~std::uint32_t{kGood};
}

}  // namespace orma
