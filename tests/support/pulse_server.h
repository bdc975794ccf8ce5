#pragma once

#include <string>

#include <signal.h>

#include "support/temp_folder.h"

namespace orma::test {

/// A sound server of our own with one null sink "mic", whose monitor is the default microphone. It
/// lives in a folder of its own, is found through the environment of this process, and ends with
/// the object or with the process.
class PulseServer {
  public:
    PulseServer();
    ~PulseServer() { Kill(); }
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// Whether it came up; the tests fail when it did not (the package pulseaudio is required).
    [[nodiscard]] bool IsRunning() const { return process_ > 0; }

    /// Starts to speak a WAV file into the microphone; Wait for the process that is returned.
    [[nodiscard]] pid_t Speak(const Text& file) const;

    /// The exit code of a process of ours.
    static int Wait(pid_t process);

    /// Stops the server as a hang would, lets it go on, and ends it at once.
    void Freeze() const { ::kill(process_, SIGSTOP); }
    void Thaw() const { ::kill(process_, SIGCONT); }
    void Kill();

  private:
    TempFolder folder_;
    pid_t process_ = -1;
};

}  // namespace orma::test
