#include "platform/portaudio/bounded_worker.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace orma {
namespace {

struct Job {
    std::function<void()> run;
    std::function<void()> undo;
    bool done = false;
    bool overdue = false;
};

}  // namespace

struct BoundedWorker::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Job>> jobs;
    bool late = false;  // an overdue job is running
    bool finish = false;
    bool ended = false;

    void Work() {
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [this] { return finish || !jobs.empty(); });
            if (jobs.empty()) break;
            std::shared_ptr<Job> job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            job->run();
            lock.lock();
            job->done = true;
            if (job->overdue) {
                lock.unlock();
                if (job->undo) job->undo();
                lock.lock();
                late = false;
            }
            // What the job owns may end here, but not under the lock.
            lock.unlock();
            job.reset();
            lock.lock();
            changed.notify_all();
        }
        ended = true;
        changed.notify_all();
    }
};

BoundedWorker::BoundedWorker() : state_(std::make_shared<State>()) {
    std::thread([state = state_] { state->Work(); }).detach();
}

BoundedWorker::~BoundedWorker() {
    (void)Finish(std::chrono::milliseconds(0));
}

bool BoundedWorker::Run(std::function<void()> job, std::function<void()> undo,
                        std::chrono::milliseconds limit) {
    const auto own = std::make_shared<Job>(Job{std::move(job), std::move(undo)});
    std::unique_lock lock(state_->mutex);
    if (state_->late || state_->finish) return false;
    state_->jobs.push_back(own);
    state_->changed.notify_all();
    if (state_->changed.wait_for(lock, limit, [&] { return own->done; })) return true;
    auto& jobs = state_->jobs;
    if (const auto waiting = std::find(jobs.begin(), jobs.end(), own); waiting != jobs.end()) {
        jobs.erase(waiting);
    } else {
        own->overdue = true;
        state_->late = true;
    }
    return false;
}

void BoundedWorker::Post(std::function<void()> job) {
    const std::lock_guard lock(state_->mutex);
    state_->jobs.push_back(std::make_shared<Job>(Job{std::move(job), {}}));
    state_->changed.notify_all();
}

bool BoundedWorker::Finish(std::chrono::milliseconds limit) {
    std::unique_lock lock(state_->mutex);
    state_->finish = true;
    state_->changed.notify_all();
    return state_->changed.wait_for(lock, limit, [this] { return state_->ended; });
}

}  // namespace orma
