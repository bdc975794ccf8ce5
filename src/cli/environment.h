#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "app/application.h"
#include "cli/console_boxes.h"
#include "cli/globals.h"
#include "machine/machine.h"
#include "platform/posix/posix_event_loop.h"
#include "platform/posix/signal_watch.h"

namespace orma::cli {

/// This machine and the application on it, for one run of a command. The program's folder becomes
/// current, so the caller's paths are resolved before this is built.
class Environment {
  public:
    explicit Environment(const Globals& globals);

    /// With somebody who listens to recorder and player; Ctrl-C then calls `onInterrupt` on the
    /// event loop instead of ending the program.
    Environment(const Globals& globals, TransportListener& transport,
                std::function<void()> onInterrupt);

    /// With somebody who watches a publish job.
    Environment(const Globals& globals, PublishProgress& progress);

    [[nodiscard]] Application& App() { return *app_; }
    [[nodiscard]] PosixEventLoop& Loop() { return loop_; }
    [[nodiscard]] ConsoleBoxes& Boxes() { return boxes_; }
    [[nodiscard]] WaveSystem& Waves() { return machine_.Waves(); }

  private:
    /// A job that nobody watches.
    class QuietProgress : public PublishProgress {
        void SetText(const Text&) override {}
        void SetRange(std::uint32_t) override {}
        void Step(std::uint32_t) override {}
        [[nodiscard]] bool IsCancelled() override { return false; }
    };

    void Build(const Globals& globals, FrontEnd frontEnd);

    ConsoleBoxes boxes_;
    PosixEventLoop loop_;
    std::optional<SignalWatch> interrupt_;  // before the sound system starts its first thread
    TransportListener quietTransport_;
    QuietProgress quietProgress_;
    Machine machine_{loop_, boxes_};
    std::unique_ptr<Application> app_;
};

}  // namespace orma::cli
