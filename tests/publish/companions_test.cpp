// Images and text, and what is checked before anything is sent.

#include <filesystem>

#include <gmock/gmock.h>

#include "publish_rig.h"

namespace orma::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CompanionsTest : PublishTest {
    CompanionsTest() {
        AddClips();
        settings.ImagePublishing = 1;
        image.resize(400'000);
        for (std::size_t i = 0; i < image.size(); ++i)
            image[i] = static_cast<std::uint8_t>(i * 7);
        WriteFileBytes(Path(u"boat.jpg"), image);
        WriteFileBytes(Path(u"quay"), ByteSpan(image).first(5));
        dialogs.onShow = [this] {
            choices.images.Clear();
            Choose(u"boat.jpg");
            Choose(u"quay");
            choices.imagesAttached = true;
        };
    }

    void Choose(TextView name) { EXPECT_TRUE(choices.images.Add(files, Path(name))); }

    /// Lets something happen as the first image is about to be sent.
    void AtTheImage(const std::function<void()>& happens) {
        progress.onText = [happens](const Text& text) {
            if (text == u"  Publishing image...  ") happens();
        };
    }

    Bytes image;
};

TEST_F(CompanionsTest, FollowTheSoundByFtp) {
    settings.PublishText = 1;
    settings.UseProjectTextFile = 1;
    settings.ProjectTextFile = u"/desk/notes.nws";
    settings.FtpFolder = u"in";
    ASSERT_EQ(Job().MenuPublishCliplist(false), PublishOutcome::kPublished);
    EXPECT_EQ(dialogs.shown, std::vector<int>{113});
    EXPECT_EQ(server.files.size(), 4U);
    EXPECT_EQ(server.files[u"in/talk_01.jpg"], image);
    EXPECT_EQ(server.files[u"in/talk_02"], Bytes(image.begin(), image.begin() + 5));
    const Bytes& text = server.files[u"in/talk.nws"];
    EXPECT_EQ(std::string(text.begin(), text.end()), "Harbour");
    EXPECT_THAT(progress.texts, ElementsAre(u"  Connecting...  ", u"  Publishing audio...  ",
                                            u"  Publishing image...  ", u"  Publishing text...  "));

    // Fast: no dialog, no images, but the text.
    settings.ProjectTextFile = u"/desk/notes.d/harbour";
    server.files.clear();
    ASSERT_EQ(Job().MenuPublishFastCliplist(false), PublishOutcome::kPublished);
    EXPECT_EQ(server.files.size(), 2U);
    EXPECT_TRUE(server.files.contains(u"in/talk.txt")) << "a dot of the folder is no extension";
    EXPECT_EQ(dialogs.shown.size(), 1U);
}

TEST_F(CompanionsTest, GoAloneUnderTheirOwnNamesOrAsMailsOfTheirOwn) {
    dialogs.ftp.keepNames = true;
    ASSERT_EQ(Job().MenuPublishImage(false), PublishOutcome::kPublished);
    EXPECT_EQ(dialogs.shown, std::vector<int>{123});
    EXPECT_EQ(server.files[u"boat.jpg"], image);
    EXPECT_EQ(server.files.size(), 2U);
    // Nothing is selected: the images are all that there is.
    server.files.clear();
    PublishJob job = Job();
    ASSERT_EQ(job.MenuPublishClip(false), PublishOutcome::kPublished);
    EXPECT_FALSE(job.HasSentSound());
    EXPECT_EQ(server.files[u"talk_01.jpg"], image);
    settings.PublishMethod = 2;
    ExpectMails(3);
    ASSERT_EQ(job.MenuPublishCliplist(false), PublishOutcome::kPublished);
    EXPECT_TRUE(job.HasSentSound());
    EXPECT_THAT(boxes.Texts(), IsEmpty());
    const std::vector<Bytes> attachments = Attachments();
    ASSERT_EQ(attachments.size(), 3U);
    EXPECT_EQ(Findings(attachments[0]), "");
    EXPECT_EQ(attachments[1], image);
}

TEST_F(CompanionsTest, OfOneNameDoNotReplaceEachOther) {
    std::filesystem::create_directory(folder.Native(u"b"));
    WriteFileBytes(Path(u"b/BOAT.jpg"), ByteSpan(image).first(9));
    dialogs.onShow = [&] {
        Choose(u"boat.jpg");
        Choose(u"b/BOAT.jpg");
    };
    dialogs.ftp.keepNames = true;
    ASSERT_EQ(Job().MenuPublishImage(false), PublishOutcome::kPublished);
    EXPECT_EQ(server.files[u"boat.jpg"], image);
    EXPECT_EQ(server.files[u"BOAT_02.jpg"].size(), 9U);
}

TEST_F(CompanionsTest, OfFourGigabytesAreRefusedAndChangedOnesNotSent) {
    const Text film = Path(u"film.mp4");
    WriteFileBytes(film, {});
    std::filesystem::resize_file(folder.Native(u"film.mp4"), std::uint64_t{1} << 32);
    EXPECT_FALSE(choices.images.Add(files, film));
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"Too large to send (4 GB):\n" + film));
    const auto choose = dialogs.onShow;
    dialogs.onShow = [&] {
        choose();
        WriteFileBytes(Path(u"boat.jpg"), ByteSpan(image).first(7));
    };
    EXPECT_EQ(Job().MenuPublishImage(false), PublishOutcome::kFailed);
}

TEST_F(CompanionsTest, AreNamedWhenTheyDoNotArrive) {
    AtTheImage([&] { server.breaksAfter = 20000; });
    EXPECT_EQ(Job().MenuPublishCliplist(false), PublishOutcome::kFailed);
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"Connection lost", u"Not published:\ntalk_01.jpg"));
    EXPECT_EQ(Findings(server.files[u"talk.wav"]), "") << "the sound is there";

    // The silence of a job that goes on by itself lasts until its end.
    boxes.shown.clear();
    settings.AutoResume = 1;
    AtTheImage([&] { server.opening = {kFtpRefused, 553, u"553 No."}; });
    EXPECT_EQ(Job().MenuPublishCliplist(false), PublishOutcome::kFailed);
    report.ReportInternetFailure(u"x", kFtpTimeout, u"");
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"Not published:\ntalk_01.jpg", u"Timeout"));
}

TEST_F(CompanionsTest, ThatAreCancelledStopAtTheNextBlock) {
    for (const std::uint32_t method : {0U, 2U}) {
        settings.PublishMethod = method;
        ExpectMails(1);
        boxes.shown.clear();
        progress.cancelAt = 0;
        AtTheImage([&] { progress.cancelAt = progress.asked + 4; });
        EXPECT_EQ(Job().MenuPublishImage(false), PublishOutcome::kCancelled);
        EXPECT_THAT(boxes.Texts(),
                    ElementsAre(u"Publishing was cancelled.\nThe publication is incomplete."));
        EXPECT_THAT(tcp.Sent(), testing::Not(testing::HasSubstr("\r\n.\r\n")))
            << "half a mail is never ended";
        EXPECT_LT(server.files[u"talk_01.jpg"].size(), image.size());
        EXPECT_LE(server.files.size(), 1U);
    }
}

using PublishChecks = PublishTest;

TEST_F(PublishChecks, RefuseWithTheirTexts) {
    PublishJob job = Job();
    const Text busy = u"MenuPublishCliplist";
    const Text noClips = u"Nothing in cliplist";
    const Text tooHigh =
        u"Sample-rate= 96 KHz.\nYou can not publish at\nsample-rates higher than 48 KHz.";
    const auto refuse = [&](PublishOutcome (PublishJob::*command)(bool), bool isBusy = false) {
        boxes.shown.clear();
        EXPECT_EQ((job.*command)(isBusy), PublishOutcome::kRefused);
        return boxes.shown.empty() ? Text() : boxes.shown[0].text;
    };
    for (const auto command : {&PublishJob::MenuPublishClip, &PublishJob::MenuPublishFastClip,
                               &PublishJob::MenuPublishImage, &PublishJob::MenuPublishClipToFile,
                               &PublishJob::MenuPublishCliplistToFile})
        EXPECT_EQ(refuse(command, true), u"");
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplist, true), busy);
    EXPECT_EQ(refuse(&PublishJob::MenuPublishFastClip), u"Nothing recorded or selected");
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplistToFile), noClips);
    EXPECT_EQ(refuse(&PublishJob::MenuPublishImage), u"");  // images are off
    settings.FtpPublishing = 0;
    EXPECT_EQ(refuse(&PublishJob::MenuPublishClip), u"");
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplist), busy);
    settings.ImagePublishing = 1;
    EXPECT_EQ(refuse(&PublishJob::MenuPublishFastCliplist), u"");  // images need no clip
    audio.sampleRate = 96000;
    EXPECT_EQ(refuse(&PublishJob::MenuPublishImage), tooHigh);
    settings.ImagePublishing = 0;
    settings.PublishMethod = 1;  // which needs no such option
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplist), noClips);
    AddClips();
    settings.PublishToFile = 0;
    EXPECT_EQ(refuse(&PublishJob::MenuPublishClipToFile), u"");
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplistToFile), busy);
    settings.PublishToFile = 1;
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplistToFile), tooHigh);
    audio.sampleRate = 44100;
    settings.Recipient = u"nobody";
    EXPECT_EQ(refuse(&PublishJob::MenuPublishFastCliplist), u"Illegal email-address");
    settings.PublishMethod = 0;
    settings.FtpServer.clear();
    const Text noFtp = u"No FTP server is set up.\nIt is added with orma-setup.";
    EXPECT_EQ(refuse(&PublishJob::MenuPublishFastCliplist), noFtp);
    settings.FtpPublishing = 1;
    settings.ImagePublishing = 1;
    EXPECT_EQ(refuse(&PublishJob::MenuPublishCliplist), noFtp);
    settings.PublishMethod = 2;
    settings.SmtpServer.clear();
    EXPECT_EQ(refuse(&PublishJob::MenuPublishImage),
              u"No mail server is set up.\nIt is added with orma-setup.");
    EXPECT_THAT(dialogs.shown, IsEmpty()) << "nobody fills a dialog in for nothing";
}

}  // namespace
}  // namespace orma::test
