#include "platform/openssl/openssl_tls.h"

#include <gtest/gtest.h>

#include "platform/openssl/openssl_keyed_hash.h"
#include "platform/tls_server.h"
#include "support/fake_tcp.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

using End = NetworkResult::End;

struct OpensslTlsTest : testing::Test {
    OpensslTlsTest() { test::WriteFileBytes(caFile, ToBytes(test::Pem(authority))); }

    static Bytes ToBytes(const std::string& text) { return {text.begin(), text.end()}; }

    TlsFailure Secure(const test::Identity& peer, const std::string& host) {
        return tls.Secure(std::make_unique<test::TlsServer>(peer), {host, caFile}, 1000, secured);
    }

    test::TempFolder folder;
    test::Identity authority = test::MakeIdentity("", 3600, nullptr);
    test::Identity server = test::MakeIdentity("DNS:mail.x.org,IP:127.0.0.1", 3600, &authority);
    Text caFile = folder.Path(u"ca.pem");
    OpensslTlsConnections tls;
    std::unique_ptr<TcpConnection> secured;
};

TEST_F(OpensslTlsTest, CarriesBytesBothWaysUntilTheServerEndsIt) {
    ASSERT_EQ(Secure(server, "mail.x.org"), TlsFailure::kNone);
    Bytes bytes(50'000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    ASSERT_TRUE(secured->Send(bytes).Ok());
    Bytes back;
    std::array<std::uint8_t, 512> piece;
    for (std::size_t got = 0; back.size() < bytes.size();) {
        ASSERT_TRUE(secured->Receive(piece, got, 1000).Ok());
        back.insert(back.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    }
    EXPECT_EQ(back, bytes);
    std::size_t got = 0;
    EXPECT_EQ(secured->Receive(piece, got, 1000).end, End::kTimedOut);
    ASSERT_TRUE(secured->Send(AsBytes("end")).Ok());
    EXPECT_EQ(secured->Receive(piece, got, 1000).end, End::kClosed);
}

TEST_F(OpensslTlsTest, AcceptsNobodyButTheHostWithACertificateThatIsValidAndTrusted) {
    EXPECT_EQ(Secure(server, "127.0.0.1"), TlsFailure::kNone);
    EXPECT_EQ(Secure(server, "127.0.0.2"), TlsFailure::kWrongHost);
    EXPECT_EQ(Secure(server, "x.org"), TlsFailure::kWrongHost);
    const test::Identity expired = test::MakeIdentity("DNS:mail.x.org", -3600, &authority);
    EXPECT_EQ(Secure(expired, "mail.x.org"), TlsFailure::kExpired);
    const test::Identity own = test::MakeIdentity("DNS:mail.x.org", 3600, nullptr);
    EXPECT_EQ(Secure(own, "mail.x.org"), TlsFailure::kUntrusted);
    caFile.clear();  // the system's store, in which nobody vouches for this server
    secured = nullptr;
    EXPECT_EQ(Secure(server, "mail.x.org"), TlsFailure::kUntrusted);
    caFile = folder.Path(u"missing.pem");
    EXPECT_EQ(Secure(server, "mail.x.org"), TlsFailure::kTrustStore);
    EXPECT_EQ(secured, nullptr);
}

TEST_F(OpensslTlsTest, AServerThatTalksSomethingElseIsNoTlsServer) {
    test::FakeTcp plainServer;
    test::FakePatience patience;
    const auto trySecure = [&] {
        std::unique_ptr<TcpConnection> plain;
        EXPECT_TRUE(plainServer.Connect({}, 25, patience, plain).Ok());
        return tls.Secure(std::move(plain), {"mail.x.org", caFile}, 1000, secured);
    };
    plainServer.replies = {"500 what?\r\n"};
    EXPECT_EQ(trySecure(), TlsFailure::kHandshake);
    plainServer.replies = {""};
    EXPECT_EQ(trySecure(), TlsFailure::kHandshake);
    plainServer.replies = {""};
    plainServer.silence = {End::kGivenUp};
    EXPECT_EQ(trySecure(), TlsFailure::kGivenUp);
}

TEST(OpensslKeyedHashTest, KnowsTheExampleOfRfc2104AndAnEmptyKey) {
    OpensslKeyedHash hash;
    std::array<std::uint8_t, 16> digest{};
    ASSERT_TRUE(hash.HmacMd5(AsBytes("Jefe"), AsBytes("what do ya want for nothing?"), digest));
    EXPECT_EQ(digest[0], 0x75);
    EXPECT_EQ(digest[15], 0x38);
    ASSERT_TRUE(hash.HmacMd5({}, {}, digest));
    EXPECT_EQ(digest[0], 0x74);
}

}  // namespace
}  // namespace orma
