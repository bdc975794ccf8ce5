#pragma once

#include <random>

#include "project/project.h"
#include "support/fake_boxes.h"
#include "support/fake_clock.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma::test {

/// What a take of the edit tests is made of.
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

/// A project "talk" in `folder` as one run of the program has it, on storage that can fail.
struct EditRun {
    EditRun(const TempFolder& folder, const TakeFormat& format);

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

/// Lets temporary folders lie in memory where the system has such a place, as long as this lives:
/// thousands of runs that wait for the medium would take minutes.
class FoldersInMemory {
  public:
    FoldersInMemory();
    ~FoldersInMemory();
    FoldersInMemory(const FoldersInMemory&) = delete;
    FoldersInMemory& operator=(const FoldersInMemory&) = delete;

  private:
    bool set_ = false;
};

/// A take with random sound, levels, marks and cuts, and what its files hold.
struct RandomTake {
    RandomTake(const TempFolder& folder, const Text& name, const TakeFormat& format,
               std::uint32_t periods, std::mt19937& random);

    Text path;
    Bytes sound;
    LevelSheet sheet;
};

/// The whole file of a WAV take, or just the frames.
[[nodiscard]] Bytes TakeFile(const TakeFormat& format, ByteSpan sound);

/// The level file that a selection [begin, end) of `sheet` has.
[[nodiscard]] Bytes SelectionLevels(const LevelSheet& sheet, std::uint32_t begin,
                                    std::uint32_t end);

}  // namespace orma::test
