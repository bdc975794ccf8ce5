#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace orma {

/// One thread for calls that may block for ever, and a caller that never waits longer than it says.
/// Jobs run one after the other in the order of their hand-over. A job that hangs keeps the thread;
/// what the jobs refer to must be owned by them (shared_ptr), because nobody can end a hung call.
/// Used from one thread.
class BoundedWorker {
  public:
    BoundedWorker();

    /// Finish without waiting.
    ~BoundedWorker();
    BoundedWorker(const BoundedWorker&) = delete;
    BoundedWorker& operator=(const BoundedWorker&) = delete;

    /// Runs `job` on the thread and waits for its end; false when `limit` passed before. A job that
    /// had not begun is then dropped; behind one that had, `undo` runs once it comes to its end.
    /// While such a late job runs, further calls fail at once.
    [[nodiscard]] bool Run(std::function<void()> job, std::function<void()> undo,
                           std::chrono::milliseconds limit);

    /// Hands over a job without waiting for it.
    void Post(std::function<void()> job);

    /// Lets the thread end after the jobs handed over so far; false when that takes longer than
    /// `limit`, and the thread is left to itself. No job may be handed over afterwards.
    bool Finish(std::chrono::milliseconds limit);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace orma
