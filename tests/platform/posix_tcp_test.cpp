#include "platform/posix/posix_tcp.h"

#include <array>
#include <utility>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "support/fake_patience.h"

namespace orma {
namespace {

using End = NetworkResult::End;

constexpr Ipv4Address kHere = {127, 0, 0, 1};

/// A socket that listens on some port of 127.0.0.1, and a connection to it.
struct PosixTcpTest : testing::Test {
    PosixTcpTest() {
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        EXPECT_TRUE(tcp.Connect(kHere, port, patience, connection).Ok());
        server = ::accept(listener, nullptr, nullptr);
        ::close(listener);
    }
    ~PosixTcpTest() override { CloseServer(); }
    void CloseServer() {
        if (server >= 0) ::close(std::exchange(server, -1));
    }

    int server = -1;
    std::uint16_t port = 0;
    test::FakePatience patience;
    PosixTcpConnections tcp;
    std::unique_ptr<TcpConnection> connection;
};

TEST_F(PosixTcpTest, SendsReceivesAndTellsWhyNothingComes) {
    std::array<std::uint8_t, 16> buffer{};
    std::size_t got = 0;
    ASSERT_TRUE(connection->Send(AsBytes("hello")).Ok());
    EXPECT_EQ(::recv(server, buffer.data(), buffer.size(), 0), 5);
    EXPECT_EQ(connection->Receive(buffer, got, 60).end, End::kTimedOut);
    EXPECT_EQ(::send(server, "220", 3, 0), 3);
    ASSERT_TRUE(connection->Receive(buffer, got, 5000).Ok());
    EXPECT_EQ(got, 3U);
    patience.turns = 2;
    EXPECT_EQ(connection->Receive(buffer, got, 60'000).end, End::kGivenUp);
    patience.turns = SIZE_MAX;
    CloseServer();
    EXPECT_EQ(connection->Receive(buffer, got, 5000).end, End::kClosed);
    const NetworkResult nobodyThere = tcp.Connect(kHere, port, patience, connection);
    EXPECT_EQ(nobodyThere.error, static_cast<SystemError>(ECONNREFUSED));
}

TEST_F(PosixTcpTest, ASendThatNobodyTakesEndsWithThePatience) {
    const Bytes much(std::size_t{64} << 20);
    patience.turns = 3;
    EXPECT_EQ(connection->Send(much).end, End::kGivenUp);
    patience.turns = SIZE_MAX;
    CloseServer();
    EXPECT_EQ(connection->Send(much).end, End::kFailed);
}

TEST_F(PosixTcpTest, FindsNamesAndAddressesThatHaveAName) {
    Ipv4Address address{};
    EXPECT_TRUE(tcp.FindName("localhost", patience, address).Ok());
    EXPECT_EQ(address, kHere);
    address = {};
    EXPECT_TRUE(tcp.FindAddress("127.0.0.1", patience, address).Ok());
    EXPECT_EQ(address, kHere);
    for (const char* nonsense : {"127.0.0.1\n", "1.2.3.4.5", ""})
        EXPECT_EQ(tcp.FindAddress(nonsense, patience, address).end, End::kFailed) << nonsense;
}

}  // namespace
}  // namespace orma
