#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include <sys/types.h>

namespace orma {

/// Brings files to the medium on a thread of its own, because a card may take a second for it and
/// the thread that records has no second.
class BackgroundSync {
  public:
    /// What became of the syncs of one file, whoever opened it and however often.
    class Target {
      public:
        /// The errno of the first sync that failed since the last call; 0: none. Any thread.
        [[nodiscard]] int TakeError() { return error_.exchange(0); }

      private:
        friend class BackgroundSync;
        dev_t device_ = 0;
        ino_t number_ = 0;
        std::chrono::steady_clock::time_point asked_{};  // guarded by the mutex
        std::atomic<int> error_ = 0;
    };

    BackgroundSync() = default;
    ~BackgroundSync();  // finishes what was asked for
    BackgroundSync(const BackgroundSync&) = delete;
    BackgroundSync& operator=(const BackgroundSync&) = delete;

    /// The target of an open file: the same one when a file is closed and opened again, as long as
    /// no more than a few others come between; a fresh one for a file that was just created. One
    /// thread.
    [[nodiscard]] std::shared_ptr<Target> TargetOf(int descriptor, bool created);

    /// Asks for a sync of the file, which may be closed meanwhile, and then of `newFolder`, the
    /// folder that it was just created in; empty: none. False when that is not needed, because
    /// one of the same file waits or was asked for less than half a second ago, or not possible
    /// now: the next one makes up for it. Never waits for the medium. Any thread.
    bool Request(const std::shared_ptr<Target>& target, int descriptor, std::string newFolder);

  private:
    struct Job {
        std::shared_ptr<Target> target;
        int descriptor = -1;
        std::string newFolder;
    };

    void Run();
    static void Sync(const Job& job);

    std::array<std::shared_ptr<Target>, 4> known_;
    std::size_t nextKnown_ = 0;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::array<Job, 8> waiting_;
    std::size_t waitingCount_ = 0;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace orma
