#pragma once

#include "app/live_uploads.h"

namespace orma::cli {

/// The end of a command that recorded with an upload: waits for what is still under way, with a
/// line on standard error that follows it in a terminal. UI thread.
class UploadWait {
  public:
    UploadWait(LiveUploads& uploads, EventLoop& loop, bool showLine)
        : uploads_(uploads), loop_(loop), showLine_(showLine) {}

    /// Runs the event loop until all uploads have ended and the user has been told how.
    void Run();

    /// Ctrl-C: gives the uploads up while Run waits for them, and never anything else.
    void Interrupt() {
        if (waiting_) uploads_.GiveUp();
    }

  private:
    void ShowLine();

    LiveUploads& uploads_;
    EventLoop& loop_;
    bool showLine_;
    bool waiting_ = false;
};

}  // namespace orma::cli
