#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "publish/publish_job.h"
#include "support/fake_clock.h"
#include "support/fake_ftp.h"
#include "support/faulty_storage.h"
#include "support/mail_desk.h"

namespace orma::test {

using Texts = std::vector<Text>;

/// Records what a job shows and cancels at the n-th question (0: never).
struct FakeProgress : PublishProgress {
    void SetText(const Text& text) override {
        texts.push_back(text);
        if (onText) onText(text);
    }
    void SetRange(std::uint32_t steps) override { range = steps; }
    void Step(std::uint32_t steps) override { stepped += steps; }
    bool IsCancelled() override { return cancelAt != 0 && ++asked >= cancelAt; }
    void SetBytes(std::uint64_t done, std::uint64_t total) override { bytes = {done, total}; }

    Texts texts;
    std::function<void(const Text&)> onText;
    std::pair<std::uint64_t, std::uint64_t> bytes;  // done and total
    std::uint32_t range = 0;
    std::uint32_t stepped = 0;
    std::uint32_t cancelAt = 0;
    std::uint32_t asked = 0;
};

/// Answers the publish dialogs as a test says, and notes which were shown.
struct FakeDialogs : PublishDialogs {
    bool ShowEmailDialog(EmailDialog& dialog) override {
        Show(dialog.Resource().id);
        return dialog.Start({.recipient = u"news@radio.example", .subject = u"Talk"});
    }
    bool ShowFtpDialog(FtpDialog& dialog) override {
        Show(dialog.Resource().id);
        dialog.Start(ftp);
        return true;
    }
    void Show(int id) {
        shown.push_back(id);
        if (onShow) onShow();
    }

    std::vector<int> shown;
    std::function<void()> onShow;
    FtpFields ftp;
};

/// Sound that changes from period to period: a tone of 440 Hz whose loudness goes up and down,
/// 16-bit, interleaved; the right channel has half the left one's amplitude.
[[nodiscard]] std::vector<std::int16_t> Speech(std::size_t samples, std::uint32_t rate,
                                               unsigned channels, double loudest = 24000);

/// A project named "talk" on real files that can be made to fail, with everything that a publish
/// job stands on. Recordings have 20 periods a second and were made on 5 January 2009, 9:07:03.
/// Images are off, the FTP destination is "srv".
struct PublishRig {
    PublishRig();

    [[nodiscard]] Text Path(TextView name = {}) const { return folder.Path(name); }
    [[nodiscard]] bool Exists(TextView name) { return storage.Exists(Path(name)); }
    [[nodiscard]] Bytes File(TextView name) const { return ReadFileBytes(Path(name)); }

    /// Makes the project one of WAV, or of MP2 with so many channels.
    void SetFormat(bool mp2, unsigned channels = 1);

    /// A take "<name>.wav", or in a project of MP2 "<name>.mp2" at the present bit rate, for which
    /// the sound has 48000 Hz and the project's channels. The sheet that its level file holds.
    LevelSheet AddTake(const Text& name, const std::vector<std::int16_t>& samples,
                       std::uint32_t rate = 44100, unsigned channels = 1);

    /// Writes the level file of a take.
    void AddLevels(const Text& name, const LevelSheet& sheet);

    /// A take of so many periods of one channel, and the clip of it.
    void AddSpeech(const Text& name, std::size_t periods);

    /// Appends a clip of a take to the project's list; end 0: the whole.
    void AddClip(const Text& name, std::uint32_t begin = 0, std::uint32_t end = 0,
                 const Text& title = {});

    /// Two clips, one of them whole with a cut and sound behind its last period.
    void AddClips(bool mp2 = true, std::uint32_t rate = 44100, unsigned channels = 1);

    /// The mail server takes `messages` of them.
    void ExpectMails(int messages);

    /// The attachments that it got, decoded.
    [[nodiscard]] std::vector<Bytes> Attachments() const;

    /// What the verifier finds wrong with a published file, one line each: offset and text.
    [[nodiscard]] std::string Findings(TextView name = u"pub_talk.wav");

    /// The same for bytes that arrived somewhere, "received.wav".
    [[nodiscard]] std::string Findings(const Bytes& published);

    /// A job on the settings, which have publications to files enabled.
    [[nodiscard]] PublishJob Job();

    TempFolder folder;
    FaultyStorage storage;
    FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    FileServices files{storage, report};
    FakeClock clock;
    AudioState audio;
    Mp2Decoder decoder{audio, storage, u""};
    Mp2Pipeline encoder{audio, report};
    ReaderServices readers{files, audio, decoder};
    WriterContext context{.files = files, .audio = audio, .encoder = encoder};
    WriterSlot writers{context};
    ClipList clips;
    CurrentRecording recording;
    Project project{{readers, clock, clips, recording}};
    FakeProgress progress;
    PublishPatience patience{progress, clock};
    SettingsRecord settings;
    PublishChoices choices;
    FakeDialogs dialogs;
    Text programFolder = Path();

    FakeFtp server;
    FakeTcp tcp;
    FakeTls tls{tcp};
    OpensslKeyedHash hash;
    FakeOutbox outbox;
    std::uint32_t mailBytes = 0;
    FtpServices ftp{server, report, patience};
    MailServices mail{tcp, tls, hash, outbox, files, patience, mailBytes};
};

struct PublishTest : testing::Test, PublishRig {};

}  // namespace orma::test
