#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "remote_rig.h"

namespace orma::test {
namespace {

TEST(ImageTroubles, ACancelIsToldAndCountsAtTheNextBlock) {
    for (const std::uint32_t method : {0U, 2U}) {
        RemoteRig rig;
        rig.AddClips(true, 44100, 1);
        rig.settings.ImagePublishing = 1;
        rig.settings.PublishMethod = method;
        rig.ExpectMails(1);
        const Bytes image(400'000, 0x5A);
        WriteFileBytes(rig.Path(u"boat.jpg"), image);
        WriteFileBytes(rig.Path(u"quay.jpg"), image);
        rig.dialogs.onShow = [&] {
            EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"boat.jpg")));
            EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"quay.jpg")));
            rig.choices.imagesAttached = true;
        };
        rig.progress.onText = [&](const Text& text) {
            if (text == u"  Publishing image...  ") rig.progress.cancelAt = rig.progress.asked + 4;
        };
        EXPECT_EQ(rig.Job().MenuPublishImage(false), PublishOutcome::kCancelled);
        EXPECT_THAT(rig.Boxes(), testing::ElementsAre(
                                     u"Publishing was cancelled.\nThe publication is incomplete."));
        EXPECT_THAT(rig.tcp.Sent(), testing::Not(testing::HasSubstr("\r\n.\r\n")))
            << "half a mail is never ended";
        std::size_t arrived = 0;
        for (const auto& [name, bytes] : rig.server.files)
            arrived += bytes.size();
        EXPECT_LT(arrived, image.size());
    }
}

TEST(ImageTroubles, AMissingNetworkIsTold) {
    for (const std::uint32_t method : {0U, 2U}) {
        PublishRig rig;
        rig.settings.ImagePublishing = 1;
        rig.settings.PublishMethod = method;
        rig.settings.FtpServer = u"srv";
        rig.settings.SmtpServer = u"srv";
        WriteFileBytes(rig.Path(u"boat.jpg"), Bytes(100, 0x5A));
        rig.dialogs.onShow = [&] {
            EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"boat.jpg")));
            rig.choices.imagesAttached = true;
        };
        EXPECT_EQ(rig.Job().MenuPublishImage(false), PublishOutcome::kFailed);
        EXPECT_THAT(rig.Boxes(), testing::ElementsAre(u"There is no network."));
    }
}

}  // namespace
}  // namespace orma::test
