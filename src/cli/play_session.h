#pragma once

#include <cstdint>
#include <optional>

#include "app/application.h"
#include "platform/event_loop.h"
#include "transport/play_list.h"

namespace orma::cli {

/// Watches playing from the command line: shows the position line, goes on to the next clip, and
/// ends the event loop once everything was heard or playing was stopped.
class PlaySession : public TransportListener {
  public:
    explicit PlaySession(bool showLine) : showLine_(showLine) {}

    /// Gives the session what it drives, before playing is started; `list` may be null.
    void Attach(Application& app, EventLoop& loop, PlayList* list);

    /// The stop button.
    void Stop();

    [[nodiscard]] bool WasStopped() const { return stopped_; }
    [[nodiscard]] bool OutputWasLost() const { return lost_; }

    void OnPosition(std::uint32_t heard, std::uint8_t level) override;
    std::optional<PeriodRange> NextRange() override;
    void OnPlayedOut() override;
    void OnOutputLost(WaveLoss reason) override;

  private:
    void End();

    bool showLine_;
    bool stopped_ = false;
    bool lost_ = false;
    Application* app_ = nullptr;
    EventLoop* loop_ = nullptr;
    PlayList* list_ = nullptr;
    std::uint32_t positionsSinceLine_ = 0;
};

}  // namespace orma::cli
