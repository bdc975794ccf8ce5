#include "platform/posix/background_sync.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/medium_sync.h"

namespace orma {
namespace {

// More often, a sync would wear the card and gain little; less often, it would risk more sound.
constexpr std::chrono::milliseconds kLeastInterval{500};

}  // namespace

BackgroundSync::~BackgroundSync() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
}

std::shared_ptr<BackgroundSync::Target> BackgroundSync::TargetOf(int descriptor, bool created) {
    struct stat info {};
    (void)::fstat(descriptor, &info);
    const auto found = std::find_if(known_.begin(), known_.end(), [&](const auto& target) {
        return target && target->device_ == info.st_dev && target->number_ == info.st_ino;
    });
    if (found != known_.end() && !created) return *found;
    auto target = std::make_shared<Target>();
    target->device_ = info.st_dev;
    target->number_ = info.st_ino;
    if (found != known_.end()) return *found = target;  // its number was another file's
    known_[nextKnown_] = target;
    nextKnown_ = (nextKnown_ + 1) % known_.size();
    return target;
}

bool BackgroundSync::Request(const std::shared_ptr<Target>& target, int descriptor,
                             std::string newFolder) {
    {
        const std::lock_guard lock(mutex_);
        const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(waitingCount_);
        const auto waits = [&](const Job& job) { return job.target == target; };
        if (waitingCount_ == waiting_.size() || std::any_of(waiting_.begin(), end, waits))
            return false;
        const auto now = std::chrono::steady_clock::now();
        if (now - target->asked_ < kLeastInterval) return false;
        if (!thread_.joinable()) {
            try {
                thread_ = std::thread([this] { Run(); });
            } catch (const std::system_error&) {
                return false;  // no thread to be had: the system syncs later
            }
        }
        const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
        if (own < 0) return false;
        waiting_[waitingCount_++] = {target, own, std::move(newFolder)};
        target->asked_ = now;
    }
    wake_.notify_one();
    return true;
}

void BackgroundSync::Sync(const Job& job) {
    if (const int error = SyncFile(job.descriptor); error != 0) {
        int none = 0;
        job.target->error_.compare_exchange_strong(none, error);
    }
    ::close(job.descriptor);
    if (!job.newFolder.empty()) SyncFolder(job.newFolder);
}

void BackgroundSync::Run() {
    std::unique_lock lock(mutex_);
    while (true) {
        wake_.wait(lock, [this] { return ending_ || waitingCount_ > 0; });
        if (waitingCount_ == 0) return;
        const Job job = std::move(waiting_.front());
        std::move(waiting_.begin() + 1, waiting_.end(), waiting_.begin());
        --waitingCount_;
        lock.unlock();
        Sync(job);
        lock.lock();
    }
}

}  // namespace orma
