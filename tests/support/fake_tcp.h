#pragma once

#include <algorithm>
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
    [[nodiscard]] NetworkResult FindName(const std::string& name, Patience&,
                                         Ipv4Address&) override {
        lookUps.push_back("name " + name);
        return find;
    }
    [[nodiscard]] NetworkResult FindAddress(const std::string& dotted, Patience&,
                                            Ipv4Address&) override {
        lookUps.push_back("address " + dotted);
        return find;
    }
    [[nodiscard]] NetworkResult Connect(const Ipv4Address&, std::uint16_t toPort, Patience&,
                                        std::unique_ptr<TcpConnection>& connection) override {
        port = toPort;
        if (connect.Ok()) connection = std::make_unique<Connection>(*this);
        return connect;
    }

    /// All that was sent, as one text.
    [[nodiscard]] std::string Sent() const {
        std::string all;
        for (const std::string& send : sends)
            all += send;
        return all;
    }

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

  private:
    class Connection : public TcpConnection {
      public:
        explicit Connection(FakeTcp& server) : server_(server) { server_.isOpen = true; }
        ~Connection() override { server_.isOpen = false; }
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got, unsigned) override {
            if (server_.replies.empty()) return {NetworkResult::End::kClosed};
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
            if (server_.sends.size() >= server_.failingSend) return {NetworkResult::End::kFailed};
            server_.sends.emplace_back(bytes.begin(), bytes.end());
            return {};
        }

      private:
        FakeTcp& server_;
    };
};

/// TLS that only leaves its mark, or fails as told.
class FakeTls : public TlsConnections {
  public:
    explicit FakeTls(FakeTcp& tcp) : tcp_(tcp) {}

    [[nodiscard]] TlsFailure Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer&, unsigned,
                                    std::unique_ptr<TcpConnection>& secured) override {
        if (failure != TlsFailure::kNone) return failure;
        tcp_.sends.emplace_back("<TLS>");
        secured = std::move(plain);
        return failure;
    }

    TlsFailure failure = TlsFailure::kNone;

  private:
    FakeTcp& tcp_;
};

}  // namespace orma::test
