#include "support/fake_tcp.h"

#include <algorithm>

namespace orma::test {
namespace {

using End = NetworkResult::End;

class FakeConnection : public TcpConnection {
  public:
    explicit FakeConnection(FakeTcp& server) : server_(server) { server_.isOpen = true; }
    ~FakeConnection() override { server_.isOpen = false; }
    FakeConnection(const FakeConnection&) = delete;
    FakeConnection& operator=(const FakeConnection&) = delete;

    NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got, unsigned) override {
        if (server_.replies.empty()) return {End::kClosed};
        std::string reply = server_.replies.front();
        server_.replies.pop_front();
        if (reply.empty()) return server_.silence;
        got = std::min(reply.size(), into.size());
        std::copy_n(reply.begin(), got, into.begin());
        server_.heard[server_.sends.size()].append(reply, 0, got);
        if (got < reply.size()) server_.replies.push_front(reply.substr(got));
        return {};
    }

    NetworkResult Send(ByteSpan bytes) override {
        if (server_.sends.size() >= server_.failingSend) return {End::kFailed};
        server_.sends.emplace_back(bytes.begin(), bytes.end());
        return {};
    }

  private:
    FakeTcp& server_;
};

}  // namespace

NetworkResult FakeTcp::FindName(const std::string& name, Patience&, Ipv4Address&) {
    lookUps.push_back("name " + name);
    return find;
}

NetworkResult FakeTcp::FindAddress(const std::string& dotted, Patience&, Ipv4Address&) {
    lookUps.push_back("address " + dotted);
    return find;
}

NetworkResult FakeTcp::Connect(const Ipv4Address&, std::uint16_t toPort, Patience&,
                               std::unique_ptr<TcpConnection>& connection) {
    port = toPort;
    if (connect.Ok()) connection = std::make_unique<FakeConnection>(*this);
    return connect;
}

std::string FakeTcp::Sent() const {
    std::string all;
    for (const std::string& send : sends)
        all += send;
    return all;
}

TlsFailure FakeTls::Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer& whom, unsigned,
                           std::unique_ptr<TcpConnection>& secured) {
    peer = whom;
    if (failure != TlsFailure::kNone) return failure;
    tcp_.sends.emplace_back("<TLS>");
    secured = std::move(plain);
    return failure;
}

}  // namespace orma::test
