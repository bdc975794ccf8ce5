// Images and text, and what is checked before anything is sent.

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "remote_rig.h"

namespace orma::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CompanionsTest : testing::Test {
    CompanionsTest() {
        rig.AddClips(true, 44100, 1);
        rig.settings.ImagePublishing = 1;
        image.resize(40000);
        for (std::size_t i = 0; i < image.size(); ++i)
            image[i] = static_cast<std::uint8_t>(i * 7);
        WriteFileBytes(rig.Path(u"boat.jpg"), image);
        WriteFileBytes(rig.Path(u"quay"), ByteSpan(image).first(5));
        rig.dialogs.onShow = [this] {
            rig.choices.images.Clear();
            EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"boat.jpg")));
            EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"quay")));
            rig.choices.imagesAttached = true;
        };
    }

    RemoteRig rig;
    Bytes image;
};

TEST_F(CompanionsTest, FollowTheSoundByFtp) {
    rig.settings.PublishText = 1;
    rig.settings.UseProjectTextFile = 1;
    rig.settings.ProjectTextFile = u"/desk/notes.nws";
    rig.settings.FtpFolder = u"in";
    ASSERT_EQ(rig.Job().MenuPublishCliplist(false), PublishOutcome::kPublished);
    EXPECT_EQ(rig.dialogs.shown, std::vector<int>{113});
    EXPECT_EQ(rig.server.files.size(), 4U);
    EXPECT_EQ(rig.server.files[u"in/talk_01.jpg"], image);
    EXPECT_EQ(rig.server.files[u"in/talk_02"], Bytes(image.begin(), image.begin() + 5));
    const Bytes& text = rig.server.files[u"in/talk.nws"];
    EXPECT_EQ(std::string(text.begin(), text.end()), "Harbour");
    EXPECT_THAT(rig.progress.texts,
                ElementsAre(u"  Connecting...  ", u"  Publishing audio...  ",
                            u"  Publishing image...  ", u"  Publishing text...  "));

    // Fast: no dialog, no images, but the text.
    rig.settings.ProjectTextFile = u"/desk/notes.d/harbour";
    rig.server.files.clear();
    ASSERT_EQ(rig.Job().MenuPublishFastCliplist(false), PublishOutcome::kPublished);
    EXPECT_EQ(rig.server.files.size(), 2U);
    EXPECT_TRUE(rig.server.files.contains(u"in/talk.txt")) << "a dot of the folder is no extension";
    EXPECT_EQ(rig.dialogs.shown.size(), 1U);
}

TEST_F(CompanionsTest, GoAloneUnderTheirOwnNamesOrAsMailsOfTheirOwn) {
    rig.dialogs.ftp.keepNames = true;
    ASSERT_EQ(rig.Job().MenuPublishImage(false), PublishOutcome::kPublished);
    EXPECT_EQ(rig.dialogs.shown, std::vector<int>{123});
    EXPECT_EQ(rig.server.files[u"boat.jpg"], image);
    EXPECT_EQ(rig.server.files.size(), 2U);
    // Nothing is selected: the images are all that there is.
    rig.server.files.clear();
    PublishJob job = rig.Job();
    ASSERT_EQ(job.MenuPublishClip(false), PublishOutcome::kPublished);
    EXPECT_FALSE(job.HasSentSound());
    EXPECT_EQ(rig.server.files[u"talk_01.jpg"], image);
    rig.settings.PublishMethod = 2;
    rig.ExpectMails(3);
    ASSERT_EQ(job.MenuPublishCliplist(false), PublishOutcome::kPublished);
    EXPECT_TRUE(job.HasSentSound());
    EXPECT_THAT(rig.Boxes(), IsEmpty());
    const std::vector<Bytes> attachments = rig.Attachments();
    ASSERT_EQ(attachments.size(), 3U);
    EXPECT_EQ(rig.Findings(attachments[0]), "");
    EXPECT_EQ(attachments[1], image);
}

TEST_F(CompanionsTest, OfOneNameDoNotReplaceEachOther) {
    std::filesystem::create_directory(rig.files.folder.Native(u"b"));
    WriteFileBytes(rig.Path(u"b/BOAT.jpg"), ByteSpan(image).first(9));
    rig.dialogs.onShow = [&] {
        EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"boat.jpg")));
        EXPECT_TRUE(rig.choices.images.Add(rig.files.services, rig.Path(u"b/BOAT.jpg")));
    };
    rig.dialogs.ftp.keepNames = true;
    ASSERT_EQ(rig.Job().MenuPublishImage(false), PublishOutcome::kPublished);
    EXPECT_EQ(rig.server.files[u"boat.jpg"], image);
    EXPECT_EQ(rig.server.files[u"BOAT_02.jpg"].size(), 9U);
}

TEST_F(CompanionsTest, OfFourGigabytesAreRefusedAndChangedOnesNotSent) {
    const Text path = rig.Path(u"film.mp4");
    WriteFileBytes(path, {});
    std::filesystem::resize_file(rig.files.folder.Native(u"film.mp4"), std::uint64_t{1} << 32);
    EXPECT_FALSE(rig.choices.images.Add(rig.files.services, path));
    EXPECT_THAT(rig.Boxes(), ElementsAre(u"Too large to send (4 GB):\n" + path));
    const auto choose = rig.dialogs.onShow;
    rig.dialogs.onShow = [&] {
        choose();
        WriteFileBytes(rig.Path(u"boat.jpg"), ByteSpan(image).first(7));
    };
    EXPECT_EQ(rig.Job().MenuPublishImage(false), PublishOutcome::kFailed);
}

TEST_F(CompanionsTest, AreNamedWhenTheyDoNotArrive) {
    rig.progress.onText = [&](const Text& text) {
        if (text == u"  Publishing image...  ") rig.server.breaksAfter = 20000;
    };
    EXPECT_EQ(rig.Job().MenuPublishCliplist(false), PublishOutcome::kFailed);
    EXPECT_THAT(rig.Boxes(), ElementsAre(u"Connection lost", u"Not published:\ntalk_01.jpg"));
    EXPECT_EQ(rig.Findings(rig.server.files[u"talk.wav"]), "") << "the sound is there";

    rig.files.boxes.shown.clear();
    rig.progress.onText = nullptr;
    rig.server.confirmation = {kFtpRefused, 552, u"552 Full."};
    EXPECT_EQ(rig.Job().MenuPublishImage(false), PublishOutcome::kFailed);
    EXPECT_THAT(rig.Boxes(),
                ElementsAre(u"InternetWriteFile 12003 552 Full.", u"Not published:\ntalk_01.jpg"));

    // The silence of a job that goes on by itself lasts until its end.
    rig.files.boxes.shown.clear();
    rig.server.confirmation = {};
    rig.settings.AutoResume = 1;
    rig.progress.onText = [&](const Text& text) {
        if (text == u"  Publishing image...  ") rig.server.opening = {kFtpRefused, 553, u"553 No."};
    };
    EXPECT_EQ(rig.Job().MenuPublishCliplist(false), PublishOutcome::kFailed);
    rig.files.report.ReportInternetFailure(u"x", kFtpTimeout, u"");
    EXPECT_THAT(rig.Boxes(), ElementsAre(u"Not published:\ntalk_01.jpg", u"Timeout"));
}

TEST(PublishChecks, RefuseWithTheirTexts) {
    RemoteRig rig;
    rig.audio.mp2 = true;
    PublishJob job = rig.Job();
    const Text busy = u"MenuPublishCliplist";
    const Text nothing = u"Nothing recorded or selected";
    const Text noClips = u"Nothing in cliplist";
    const Text tooHigh =
        u"Sample-rate= 96 KHz.\nYou can not publish at\n"
        u"sample-rates higher than 48 KHz.";
    const auto expect = [&](PublishOutcome outcome, const std::vector<Text>& texts) {
        EXPECT_EQ(outcome, PublishOutcome::kRefused);
        EXPECT_EQ(rig.Boxes(), texts);
        rig.files.boxes.shown.clear();
    };
    expect(job.MenuPublishClip(true), {});
    expect(job.MenuPublishFastClip(true), {});
    expect(job.MenuPublishImage(true), {});
    expect(job.MenuPublishClipToFile(true), {});
    expect(job.MenuPublishCliplistToFile(true), {});
    expect(job.MenuPublishCliplist(true), {busy});
    expect(job.MenuPublishFastCliplist(true), {busy});
    expect(job.MenuPublishImage(false), {});  // images are off
    rig.settings.ImagePublishing = 1;
    rig.audio.sampleRate = 96000;
    expect(job.MenuPublishImage(false), {tooHigh});
    rig.settings.ImagePublishing = 0;
    rig.audio.sampleRate = 44100;
    for (const bool toFile : {false, true}) {
        expect(toFile ? job.MenuPublishClipToFile(false) : job.MenuPublishClip(false), {nothing});
        expect(toFile ? job.MenuPublishCliplistToFile(false) : job.MenuPublishCliplist(false),
               {noClips});
    }
    expect(job.MenuPublishFastClip(false), {nothing});
    rig.settings.FtpPublishing = 0;
    expect(job.MenuPublishClip(false), {});
    expect(job.MenuPublishCliplist(false), {busy});
    rig.settings.ImagePublishing = 1;
    expect(job.MenuPublishFastCliplist(false), {});  // images need no clip
    rig.settings.ImagePublishing = 0;
    rig.settings.PublishMethod = 1;  // which needs no such option
    expect(job.MenuPublishCliplist(false), {noClips});
    rig.AddClips(true, 44100, 1);
    rig.settings.Recipient = u"nobody";
    expect(job.MenuPublishFastCliplist(false), {u"Illegal email-address"});
    rig.settings.PublishMethod = 0;
    rig.settings.FtpServer.clear();
    rig.settings.PublishToFile = 0;
    expect(job.MenuPublishClipToFile(false), {});
    rig.settings.PublishToFile = 1;
    rig.audio.sampleRate = 96000;
    expect(job.MenuPublishCliplistToFile(false), {tooHigh});
    const Text noFtp = u"No FTP server is set up.\nIt is added with orma-setup.";
    rig.audio.sampleRate = 44100;
    expect(job.MenuPublishFastCliplist(false), {noFtp});
    rig.settings.FtpPublishing = 1;
    rig.settings.ImagePublishing = 1;
    expect(job.MenuPublishCliplist(false), {noFtp});
    rig.settings.PublishMethod = 2;
    rig.settings.SmtpServer.clear();
    expect(job.MenuPublishImage(false),
           {u"No mail server is set up.\nIt is added with orma-setup."});
    EXPECT_THAT(rig.dialogs.shown, IsEmpty()) << "nobody fills a dialog in for nothing";
}

}  // namespace
}  // namespace orma::test
