#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "platform/event_loop.h"
#include "platform/wave.h"

namespace orma {

/// The buffers of one open device: which ones are prepared, and which of these the device holds, in
/// the order they were added. Every adapter's device has one. UI thread; once each buffer has gone
/// round nothing allocates but ReturnAll.
class WaveQueue {
  public:
    /// `blockAlign`: bytes of a sample frame, of which every buffer added holds a whole number.
    WaveQueue(EventLoop& loop, std::uint16_t blockAlign);

    ~WaveQueue();
    WaveQueue(const WaveQueue&) = delete;
    WaveQueue& operator=(const WaveQueue&) = delete;

    /// kFailed for a buffer without memory. Its length does not matter yet: a buffer may be
    /// prepared here and filled by other hardware.
    [[nodiscard]] WaveResult Prepare(WaveHeader& header);

    /// kNotPrepared, or kFailed while the device holds the buffer.
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header);

    /// Appends a buffer and sets its bytesRecorded to 0. kNotPrepared, or kFailed when the device
    /// holds it already or it does not hold whole frames.
    [[nodiscard]] WaveResult Add(WaveHeader& header);

    /// The buffers that wait, the next one first.
    [[nodiscard]] std::span<WaveHeader* const> Waiting() const { return waiting_; }

    /// Takes the next buffer out, for its return to the user.
    WaveHeader& Take();

    /// Empties the queue: every buffer that waits goes to `give` as it stands then, in an event of
    /// its own. Until then the device holds it.
    void ReturnAll(const std::function<void(WaveHeader&)>& give);

    /// Forgets all buffers, those on their way back included, because the device was closed.
    void Clear();

    /// Expires with the queue or its clearing: tells a device whether an event handler closed or
    /// destroyed it.
    [[nodiscard]] std::weak_ptr<const void> Life() const { return life_; }

  private:
    EventLoop& loop_;
    std::uint16_t blockAlign_;
    std::vector<WaveHeader*> prepared_;
    std::vector<WaveHeader*> waiting_;
    std::vector<WaveHeader*> returning_;
    std::shared_ptr<const int> life_ = std::make_shared<const int>(0);
};

}  // namespace orma
