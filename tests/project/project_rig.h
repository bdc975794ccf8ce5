#pragma once

#include <random>

#include <gtest/gtest.h>

#include "project/project.h"
#include "support/fake_boxes.h"
#include "support/fake_clock.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma::test {

using Names = std::vector<Text>;

/// What a take is made of.
struct TakeFormat {
    bool mp2 = false;
    bool stereo = false;
    unsigned shift = 2;
    std::uint32_t rate = 44100;   // WAV
    std::uint16_t bits = 16;      // WAV
    std::uint32_t kilobits = 64;  // MP2

    [[nodiscard]] Text Extension() const { return mp2 ? u".mp2" : u".wav"; }

    /// Bytes of sound in front of a period, in whole frames of MP2: the formula by itself.
    [[nodiscard]] std::size_t Before(std::size_t period) const {
        const std::size_t perSecond = 5U << shift;
        if (mp2) return period * 125 / (3 * perSecond) * (kilobits * 3);
        return rate / perSecond * (stereo ? 2U : 1U) * (bits / 8U) * period;
    }
};

/// The whole file of a WAV take, or just the frames.
[[nodiscard]] Bytes TakeFile(const TakeFormat& format, ByteSpan sound);

/// A take with random sound, levels, marks and cuts, and what its files hold.
struct RandomTake {
    RandomTake(const TempFolder& folder, const Text& name, const TakeFormat& format,
               std::uint32_t periods, std::mt19937& random);

    Text path;
    Bytes sound;
    LevelSheet sheet;
};

/// A project "talk" in `folder` as one run of the program has it, on storage that can fail.
struct ProjectRun {
    ProjectRun(const TempFolder& folder, const TakeFormat& format);

    FaultyStorage storage;
    FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    FileServices files{storage, report};
    FakeClock clock;
    AudioState audio;
    Mp2Decoder decoder{audio, storage, u""};
    ClipList clips;
    CurrentRecording recording;
    Project project{{{files, audio, decoder}, clock, clips, recording}};
};

struct OwnFolder {
    TempFolder folder;
};

/// A project in a folder of its own. All its recordings are 44100 Hz mono at 20 periods a second.
struct ProjectTest : testing::Test, OwnFolder, ProjectRun {
    static constexpr std::uint32_t kPeriodBytes = 4410;  // 44100 / 20 samples of 2 bytes

    ProjectTest() : ProjectRun(folder, {}) {}

    [[nodiscard]] Text Path(TextView name) const { return folder.Path(name); }
    [[nodiscard]] bool Exists(TextView name) { return storage.Exists(Path(name)); }
    [[nodiscard]] Bytes File(TextView name) const { return ReadFileBytes(Path(name)); }
    void AddFile(TextView name, std::string_view content) const {
        WriteFileBytes(Path(name), AsBytes(content));
    }

    /// A WAV file of silence, "<name>.wav".
    void AddWav(const Text& name, std::uint32_t periods) const;

    /// A level file "<name>.jvu" of a recording of `periods` with cuts.
    void AddLevels(const Text& name, std::uint32_t periods,
                   const std::vector<RemovedRange>& cuts = {});

    /// A recording with both files.
    void AddRecording(const Text& name, std::uint32_t periods) {
        AddWav(name, periods);
        AddLevels(name, periods);
    }

    /// Appends a clip of that recording to the list.
    void AddClipOf(const Text& name, std::uint32_t begin = 0, std::uint32_t end = 0);

    /// Writes "<name>.opr" with clips of these recordings.
    void AddProjectFile(const Text& name, const Names& clipNames);

    /// The names of the clips that a project file holds, in order.
    [[nodiscard]] Names StoredNames(TextView file);

    /// What the list calls its clips, in order.
    [[nodiscard]] Names ShownNames() const;

    /// What the recorder does: a take whose WAV file holds `periods`, finished.
    void RecordTake(std::uint32_t periods);

    /// What an interruption leaves of a take: a journal with this staged sound.
    void LeaveJournal(TextView take, ByteSpan sound);
};

}  // namespace orma::test
