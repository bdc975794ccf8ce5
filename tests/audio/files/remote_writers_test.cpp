#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/writer_slot.h"
#include "support/fake_ftp.h"
#include "support/test_files.h"

namespace orma {
namespace {

struct RemoteWritersTest : testing::Test {
    RemoteWritersTest() {
        context.remote.ftp = &ftp;
        context.remote.account.server = u"srv";
        context.remote.extension = u"mp2";
        context.remote.broadcastWave = false;
    }

    test::TestFiles files;
    test::FakeFtp server;
    test::FakePatience patience;
    FtpServices ftp{server, files.report, patience};
    AudioState audio;
    Mp2Pipeline encoder{audio, files.report};
    WriterContext context{.files = files.services, .audio = audio, .encoder = encoder};
    WriterSlot slot{context};
};

TEST_F(RemoteWritersTest, RecordStraightToAServer) {
    audio.mp2 = true;
    audio.sampleRate = 48000;
    slot.SelectWriter(WriterKind::kFtp);
    JStreamAudioWrite& writer = *slot.Current();
    writer.Connect();
    EXPECT_FALSE(writer.IsOpen()) << "connected, but no file";
    writer.Open(u"talk00");
    ASSERT_TRUE(writer.IsOpen());
    const Bytes pcm(5 * 1152 * 2 + 10, 0);
    writer.WriteSamples(pcm.data(), static_cast<std::uint32_t>(pcm.size()));
    writer.Close();
    EXPECT_TRUE(context.committed);
    EXPECT_EQ(server.files[u"talk00.mp2"].size(), 6U * 192);
    EXPECT_THAT(server.log,
                testing::ElementsAre("CONNECT srv:21", "STOR talk00.mp2", "CLOSE", "QUIT"));
}

TEST_F(RemoteWritersTest, OpenOneFileAfterTheOtherAndGoOnWithTheLast) {
    slot.SelectWriter(WriterKind::kBwfFtp);
    JStreamAudioWrite& writer = *slot.Current();
    writer.Open(u"a");
    writer.OpenRemote(u"b");
    writer.WriteEncoded("onetwo", 6);
    writer.Close();
    EXPECT_FALSE(context.committed) << "it was not finished";
    EXPECT_EQ(server.files[u"b.mp2"].size(), 6U);

    ASSERT_EQ(writer.Reconnect(3), 0);
    writer.WriteEncoded("one", 3);  // the server has it
    writer.WriteEncoded("TWO", 3);  // and this as well: what was handed over counts
    writer.WriteEncoded("end", 3);
    writer.ResendLast();
    writer.Close();
    const Bytes& file = server.files[u"b.mp2"];
    EXPECT_EQ(std::string(file.begin(), file.end()), "onetwoendend");
}

}  // namespace
}  // namespace orma
