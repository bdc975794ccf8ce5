#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "audio/engine/recorder.h"
#include "platform/event_loop.h"
#include "transport/transport_listener.h"

namespace orma::cli {

/// Watches one take from the command line: sets the asked marks, stops at the asked length, shows
/// the level line, and ends the event loop once the device is closed.
class RecordSession : public TransportListener {
  public:
    explicit RecordSession(bool showLine) : showLine_(showLine) {}

    /// Gives the session what it drives and what is asked of the take, before the recorder is
    /// started: `length` (none: until stopped) and `marks` in buffer periods.
    void Attach(Recorder& recorder, EventLoop& loop, std::uint32_t periodsPerSecond,
                std::optional<std::uint32_t> length, std::vector<std::uint32_t> marks);

    /// The stop button: what was recorded is kept. More than once is as good as once.
    void Stop();

    [[nodiscard]] bool InputWasLost() const { return inputLost_; }

    void OnLevel(std::uint8_t level) override;
    void OnSavedPeriods(std::uint32_t count) override;
    void OnClosed() override;
    void OnInputLost(WaveLoss reason) override;

  private:
    void ShowLine(std::uint8_t level);

    std::optional<std::uint32_t> length_;
    std::vector<std::uint32_t> marks_;
    std::size_t marksSet_ = 0;
    bool showLine_;
    bool inputLost_ = false;
    Recorder* recorder_ = nullptr;
    EventLoop* loop_ = nullptr;
    std::uint32_t periodsPerSecond_ = 20;
    std::uint32_t levelsSinceLine_ = 0;
};

}  // namespace orma::cli
