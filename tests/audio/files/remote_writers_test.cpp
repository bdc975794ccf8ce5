#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/writer_slot.h"
#include "support/fake_ftp.h"
#include "support/test_files.h"

namespace orma {
namespace {

TEST(RemoteWriters, RecordStraightToAServer) {
    test::TestFiles files;
    test::FakeFtp server;
    test::FakePatience patience;
    FtpServices ftp{server, files.report, patience};
    AudioState audio;
    audio.mp2 = true;
    audio.sampleRate = 48000;
    Mp2Pipeline encoder{audio, files.report};
    WriterContext context{.files = files.services, .audio = audio, .encoder = encoder};
    context.remote.ftp = &ftp;
    context.remote.account.server = u"srv";
    context.remote.extension = u"mp2";
    WriterSlot slot{context};
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

}  // namespace
}  // namespace orma
