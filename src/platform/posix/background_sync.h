#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace orma {

/// Brings files to the medium on a thread of its own, because a card may take a second for it and
/// the thread that records has no second. Any thread.
class BackgroundSync {
  public:
    /// A file to sync: a descriptor of its own, so that the file may be closed meanwhile.
    class Target {
      public:
        /// `descriptor` is duplicated. `newFolder`: the folder in which the file was just created,
        /// which is synced once with it; empty: none.
        Target(int descriptor, std::string newFolder);
        ~Target();
        Target(const Target&) = delete;
        Target& operator=(const Target&) = delete;

        /// The errno of the first sync that failed since the last call; 0: none.
        [[nodiscard]] int TakeError() { return error_.exchange(0); }

      private:
        friend class BackgroundSync;
        void Sync();

        int descriptor_;
        std::string newFolder_;
        std::atomic<int> error_ = 0;
    };

    BackgroundSync() = default;
    ~BackgroundSync();  // finishes what was asked for
    BackgroundSync(const BackgroundSync&) = delete;
    BackgroundSync& operator=(const BackgroundSync&) = delete;

    /// Asks for a sync of `target`. One that waits already is enough; with too many files waiting
    /// the request is dropped, as the next one of the same file makes up for it. Never blocks for
    /// the medium, allocates nothing once the thread runs.
    void Request(const std::shared_ptr<Target>& target);

  private:
    void Run();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::array<std::shared_ptr<Target>, 8> waiting_;
    std::size_t waitingCount_ = 0;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace orma
