#include "platform/posix/background_sync.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "platform/posix/medium_sync.h"

namespace orma {

BackgroundSync::Target::Target(int descriptor, std::string newFolder)
    : descriptor_(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0)), newFolder_(std::move(newFolder)) {}

BackgroundSync::Target::~Target() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

void BackgroundSync::Target::Sync() {
    if (const int error = SyncFile(descriptor_); error != 0) {
        int none = 0;
        error_.compare_exchange_strong(none, error);
    }
    if (!newFolder_.empty()) SyncFolder(std::exchange(newFolder_, {}));
}

BackgroundSync::~BackgroundSync() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
}

void BackgroundSync::Request(const std::shared_ptr<Target>& target) {
    {
        const std::lock_guard lock(mutex_);
        const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(waitingCount_);
        if (waitingCount_ == waiting_.size() || std::find(waiting_.begin(), end, target) != end)
            return;
        waiting_[waitingCount_++] = target;
        if (!thread_.joinable()) {
            try {
                thread_ = std::thread([this] { Run(); });
            } catch (const std::system_error&) {
                waiting_[--waitingCount_].reset();  // no thread to be had: the system syncs later
                return;
            }
        }
    }
    wake_.notify_one();
}

void BackgroundSync::Run() {
    std::unique_lock lock(mutex_);
    while (true) {
        wake_.wait(lock, [this] { return ending_ || waitingCount_ > 0; });
        if (waitingCount_ == 0) return;
        const std::shared_ptr<Target> target = std::move(waiting_.front());
        std::move(waiting_.begin() + 1, waiting_.end(), waiting_.begin());
        --waitingCount_;
        lock.unlock();
        target->Sync();
        lock.lock();
    }
}

}  // namespace orma
