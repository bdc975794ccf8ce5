// bench_open TAKE mono|stereo SEEKS: what lies between choosing a take and hearing it. "open" is
// everything up to the first sound: take and level file become the current recording, and a reader
// for the player stands at the take's start. "seek" is SEEKS jumps of that reader to random places,
// with the first buffer from there.

#include <algorithm>
#include <cstdlib>
#include <random>

#include "base/path.h"
#include "measure.h"
#include "platform/posix/posix_clock.h"
#include "project/project.h"

namespace orma::bench {
namespace {

constexpr std::uint32_t kMinute = 60 * 20;  // periods

/// One take, read as the player reads it.
class Take {
  public:
    Take(const Text& path, bool stereo)
        : desk_(stereo), path_(path), format_{44100, static_cast<std::uint16_t>(stereo ? 2 : 1)} {
        desk_.audio.mp2 = SplitPath(path).extension == u".mp2";
        buffer_.resize(format_.BufferBytes(desk_.audio.resolutionShift));
    }

    void Open() {
        PosixClock clock;
        ClipList clips;
        CurrentRecording recording;
        Project project(
            {.readers = desk_.Readers(), .clock = clock, .clips = clips, .recording = recording});
        Require(project.OpenRecording(path_), "the take was not opened");
        length_ = recording.length;
        Require(recording.sheet.levels.size() == length_, "the levels are not those of the take");
        reader_ = MakeReader(desk_.Readers(), path_, desk_.audio.mp2);
        reader_->OpenAt(0, format_);
        Require(reader_->IsOpen(), "the reader failed");
    }

    void Seek(std::uint32_t times) {
        for (std::uint32_t i = 0; i < times; ++i) {
            reader_->SeekPeriod(static_cast<std::uint32_t>(random_() % length_));
            reader_->Get(buffer_);
        }
        Require(reader_->IsOpen(), "the reader failed");
    }

    /// The far end holds sound, and it is found there.
    void CheckEnd() {
        reader_->SeekPeriod(length_ - kMinute);
        bool sound = false;
        for (std::uint32_t i = 0; i < kMinute; ++i) {
            reader_->Get(buffer_);
            sound |= std::ranges::any_of(buffer_, [](std::uint8_t byte) { return byte != 0; });
        }
        Require(sound, "the take's last minute is silent");
    }

  private:
    Desk desk_;
    Text path_;
    PlaybackFormat format_;
    Bytes buffer_;
    std::uint32_t length_ = 0;  // periods
    std::unique_ptr<JStreamAudioReadFile> reader_;
    std::minstd_rand random_;
};

}  // namespace
}  // namespace orma::bench

int main(int count, char** words) {
    using namespace orma::bench;
    Require(count == 4, "usage: bench_open TAKE mono|stereo SEEKS");
    const auto seeks = static_cast<std::uint32_t>(std::atoi(words[3]));
    Take take(orma::FromUtf8(words[1]), std::string(words[2]) == "stereo");
    take.Open();
    take.CheckEnd();
    Compare("take", {{"open", [&] { take.Open(); }}, {"seek", [&] { take.Seek(seeks); }}}, 21);
}
