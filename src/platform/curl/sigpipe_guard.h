#pragma once

#include <csignal>

namespace orma {

/// While it lives, writing to a closed connection raises no signal in this thread: OpenSSL writes
/// without saying that it wants none, and the program's own handling is not ours to change.
class SigpipeGuard {
  public:
    explicit SigpipeGuard(bool needed);
    ~SigpipeGuard();
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;

  private:
    bool held_ = false;
    sigset_t before_{};
};

}  // namespace orma
