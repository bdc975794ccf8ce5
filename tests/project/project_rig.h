#pragma once

#include "project/project.h"
#include "support/fake_clock.h"
#include "support/test_files.h"

namespace orma::test {

/// A project on real files in a folder of its own, named "talk", with every box on record. All
/// recordings are 44100 Hz mono at 20 periods a second.
struct ProjectRig {
    static constexpr std::uint32_t kPeriodBytes = 4410;  // 44100 / 20 samples of 2 bytes

    ProjectRig() { project.SetPath(files.folder.Path(), u"talk"); }

    [[nodiscard]] Text Path(TextView name) const { return files.folder.Path(name); }
    [[nodiscard]] bool Exists(TextView name) { return files.storage.Exists(Path(name)); }

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

    /// Writes "<name>.opr" with clips of these recordings and returns what it holds.
    ProjectRecord AddProjectFile(const Text& name, const std::vector<Text>& clipNames);

    /// The names of the clips that a project file holds, in order.
    [[nodiscard]] std::vector<Text> StoredNames(TextView file);

    /// The names of the clips in the list, in order.
    [[nodiscard]] std::vector<Text> ShownNames() const;

    /// What the recorder does: a take whose WAV file holds `periods`, finished.
    void RecordTake(std::uint32_t periods);

    TestFiles files;
    FakeClock clock;
    AudioState audio;
    Mp2Decoder decoder{audio, files.storage, u""};
    ClipList clips;
    CurrentRecording recording;
    Project project{{{files.services, audio, decoder}, clock, clips, recording}};
};

}  // namespace orma::test
