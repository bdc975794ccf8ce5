#pragma once

#include <functional>
#include <string>
#include <vector>

#include "publish/publish_job.h"
#include "support/fake_clock.h"
#include "support/faulty_storage.h"
#include "support/test_files.h"

namespace orma::test {

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

    std::vector<Text> texts;
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
        shown.push_back(dialog.Resource().id);
        if (onShow) onShow();
        return start && dialog.Start(email);
    }
    bool ShowFtpDialog(FtpDialog& dialog) override {
        shown.push_back(dialog.Resource().id);
        if (onShow) onShow();
        if (start) dialog.Start(ftp);
        return start;
    }

    std::vector<int> shown;
    std::function<void()> onShow;
    bool start = true;
    EmailFields email{.recipient = u"news@radio.example", .subject = u"Talk"};
    FtpFields ftp;
};

/// Sound that changes from period to period: a tone of 440 Hz whose loudness goes up and down,
/// 16-bit, interleaved; the right channel has half the left one's amplitude.
[[nodiscard]] std::vector<std::int16_t> Speech(std::size_t samples, std::uint32_t rate,
                                               unsigned channels, double loudest = 24000);

/// A project named "talk" on real files that can be made to fail, with everything that a publish
/// job stands on. Recordings have 20 periods a second and were made on 5 January 2009, 9:07:03.
struct PublishRig {
    PublishRig();

    [[nodiscard]] Text Path(TextView name = {}) const { return files.folder.Path(name); }
    [[nodiscard]] bool Exists(TextView name) { return files.storage.Exists(Path(name)); }
    [[nodiscard]] Bytes File(TextView name) const { return ReadFileBytes(Path(name)); }

    /// A WAV take "<name>.wav" and its level file; the sheet that the level file holds.
    LevelSheet AddWav(const Text& name, const std::vector<std::int16_t>& samples,
                      std::uint32_t rate = 44100, unsigned channels = 1);

    /// An MP2 take "<name>.mp2" of 48000 Hz sound at the present bit rate, and its level file.
    LevelSheet AddMp2(const Text& name, const std::vector<std::int16_t>& samples);

    /// Writes the level file of a take.
    void AddLevels(const Text& name, const LevelSheet& sheet);

    /// A take "<name>.mp2" or ".wav", by the project's format, of so many periods of one channel,
    /// and the clip of it.
    void AddTake(const Text& name, std::size_t periods);

    /// Appends a clip of a take to the project's list; end 0: the whole.
    void AddClip(const Text& name, std::uint32_t begin = 0, std::uint32_t end = 0,
                 const Text& title = {});

    /// Makes a take the current recording, as opening it does.
    void MakeCurrent(const Text& name, const LevelSheet& sheet);

    /// What the verifier finds wrong with a published file, one line each.
    [[nodiscard]] std::string Findings(TextView name = u"pub_talk.wav");

    /// A job on the settings, which have publications to files enabled.
    [[nodiscard]] PublishJob Job();

    /// The texts of the boxes shown so far.
    [[nodiscard]] std::vector<Text> Boxes() const { return files.boxes.Texts(); }

    TestFiles files;
    FaultyStorage storage{files.storage};
    FileServices services{storage, files.report};
    FakeClock clock;
    AudioState audio;
    Mp2Decoder decoder{audio, files.storage, u""};
    Mp2Pipeline encoder{audio, files.report};
    ReaderServices readers{services, audio, decoder};
    WriterContext context{.files = services, .audio = audio, .encoder = encoder};
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

  private:
    LevelSheet Levelled(const Text& name, const std::vector<std::int16_t>& samples,
                        std::uint32_t rate, unsigned channels);
    void Date(const Text& fileName);
};

}  // namespace orma::test
