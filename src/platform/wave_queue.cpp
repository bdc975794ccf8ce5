#include "platform/wave_queue.h"

#include <algorithm>

namespace orma {
namespace {

bool Contains(const std::vector<WaveHeader*>& headers, const WaveHeader& header) {
    return std::find(headers.begin(), headers.end(), &header) != headers.end();
}

}  // namespace

WaveQueue::WaveQueue(EventLoop& loop, std::uint16_t blockAlign)
    : loop_(loop), blockAlign_(blockAlign) {}

WaveQueue::~WaveQueue() = default;

WaveResult WaveQueue::Prepare(WaveHeader& header) {
    if (header.data == nullptr && header.bufferLength != 0) return WaveResult::kFailed;
    if (!Contains(prepared_, header)) prepared_.push_back(&header);
    return WaveResult::kOk;
}

WaveResult WaveQueue::Unprepare(WaveHeader& header) {
    if (Contains(waiting_, header) || Contains(returning_, header)) return WaveResult::kFailed;
    return std::erase(prepared_, &header) == 0 ? WaveResult::kNotPrepared : WaveResult::kOk;
}

WaveResult WaveQueue::Add(WaveHeader& header) {
    if (!Contains(prepared_, header)) return WaveResult::kNotPrepared;
    if (header.bufferLength % blockAlign_ != 0) return WaveResult::kFailed;
    if (Contains(waiting_, header) || Contains(returning_, header)) return WaveResult::kFailed;
    header.bytesRecorded = 0;
    waiting_.push_back(&header);
    return WaveResult::kOk;
}

WaveHeader& WaveQueue::Take() {
    WaveHeader& header = *waiting_.front();
    waiting_.erase(waiting_.begin());
    return header;
}

void WaveQueue::ReturnAll(const std::function<void(WaveHeader&)>& give) {
    for (WaveHeader* header : waiting_) {
        returning_.push_back(header);
        loop_.Post([this, life = Life(), header, give] {
            if (life.expired()) return;
            std::erase(returning_, header);
            give(*header);
        });
    }
    waiting_.clear();
}

void WaveQueue::Clear() {
    prepared_.clear();
    waiting_.clear();
    returning_.clear();
    life_ = std::make_shared<const int>(0);
}

}  // namespace orma
