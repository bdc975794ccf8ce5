#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "audio/files/audio_read.h"
#include "platform/posix/posix_storage.h"

namespace orma::bench {

/// Seconds that something took.
struct Cost {
    double cpu = 0;   // user and system, of this process and of the children that it waited for
    double wall = 0;  // as a clock on the wall tells it
};

/// One of those that are compared.
struct Contender {
    std::string name;
    std::function<void()> run;
};

/// Lets all take turns, `rounds` times after one round that does not count, and returns the median
/// of each, in their order. Taking turns makes whatever else the machine does meet all alike.
[[nodiscard]] std::vector<Cost> MedianCosts(const std::vector<Contender>& contenders,
                                            unsigned rounds);

/// MedianCosts, printed as lines of "<topic>.<name>", CPU seconds and seconds on the wall.
void Compare(const std::string& topic, const std::vector<Contender>& contenders,
             unsigned rounds = 7);

/// Ends the program with a message unless `good`: what was measured would mean nothing.
void Require(bool good, const std::string& what);

/// Runs a shell command that must succeed.
void Shell(const std::string& command);

/// The bytes of a whole file.
[[nodiscard]] Bytes ReadAll(const std::string& path);

/// The samples of a 16-bit WAV file with a 44-byte header, interleaved.
[[nodiscard]] std::vector<std::int16_t> WavSamples(const std::string& path);

/// Real files and the sound format; an error box ends the program.
class Desk {
  public:
    /// One channel at 64 kbit/s or two at 128.
    explicit Desk(bool stereo = false);

    [[nodiscard]] FileServices Files() { return {storage_, report_}; }
    [[nodiscard]] ErrorReporter& Report() { return report_; }
    [[nodiscard]] ReaderServices Readers() { return {Files(), audio, decoder}; }

  private:
    class FatalBoxes : public MessageBoxes {
        BoxAnswer Show(const MessageBox& box) override;
    };

    FatalBoxes boxes_;
    PosixStorage storage_;
    ErrorReporter report_{boxes_, storage_};

  public:
    AudioState audio;
    Mp2Decoder decoder{audio, storage_, {}};
};

}  // namespace orma::bench
