#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/portaudio/bounded_worker.h"
#include "platform/portaudio/pa_library.h"
#include "platform/portaudio/portaudio_limits.h"
#include "platform/wave_queue.h"

namespace orma {

class PortAudioDevice;

/// What an open device stands on; all references outlive it.
struct PortAudioHost {
    EventLoop& loop;
    BoundedWorker& worker;
    std::shared_ptr<PaLibrary> library;
    PortAudioLimits limits;
    std::function<void(PortAudioDevice&)> onClose;  // called by the destructor
};

/// What microphone and loudspeaker have in common: a stream whose every call goes to the worker,
/// buffers that come back as its callback gets on, and a watchdog over that callback. Halting
/// returns without waiting for the library, which may need seconds to end a stream: a closed gate
/// keeps out what it still brings. UI thread.
class PortAudioDevice {
  public:
    PortAudioDevice(const PortAudioDevice&) = delete;
    PortAudioDevice& operator=(const PortAudioDevice&) = delete;

    /// Returns the buffers that the callback has filled or taken, and looks whether the stream has
    /// ended. May destroy the device.
    void Pump();

  protected:
    /// `stream` is open.
    PortAudioDevice(PortAudioHost host, std::shared_ptr<PaStream> stream);
    virtual ~PortAudioDevice();

    /// Lets the stream run with the gate open; kNoDevice once it is lost.
    [[nodiscard]] WaveResult RunStream();
    void HaltStream();
    [[nodiscard]] WaveResult CloseStream();

    [[nodiscard]] bool IsRunning() const { return started_; }
    [[nodiscard]] bool IsLost() const { return lost_; }

    WaveQueue queue_;

  private:
    // What the direction adds. ReturnFirst takes the first buffer out of the queue and hands it to
    // the user.
    [[nodiscard]] virtual bool IsFirstDone() const = 0;
    virtual void ReturnFirst() = 0;
    virtual void TellLoss(WaveLoss reason) = 0;

    [[nodiscard]] WaveResult Call(const char* what,
                                  std::function<WaveResult(std::string& problem)> job,
                                  std::function<void()> undo);
    void OnWatchdog();
    void Lose(WaveLoss reason);

    PortAudioHost host_;
    std::shared_ptr<PaStream> stream_;
    std::unique_ptr<Timer> watchdog_;
    std::chrono::steady_clock::time_point lastCallback_;
    std::uint32_t seenCallbacks_ = 0;
    bool called_ = false;   // since the stream was started
    bool started_ = false;  // the stream runs
    bool lost_ = false;
    bool closed_ = false;
};

}  // namespace orma
