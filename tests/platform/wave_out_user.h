#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <vector>

#include <gtest/gtest.h>

#include "platform/wave.h"

namespace orma::test {

/// Plays samples from four buffers that go round, as the playback engine does; what does not fill a
/// buffer is left out.
class WaveOutUser : public WaveOutEvents {
  public:
    WaveOutUser(std::vector<std::int16_t> sound, std::uint32_t bufferSamples)
        : sound_(std::move(sound)) {
        for (std::uint32_t i = 0; i < 4; ++i) {
            memory_.emplace_back(bufferSamples);
            headers_.push_back(
                {reinterpret_cast<std::uint8_t*>(memory_[i].data()), bufferSamples * 2, 0, i});
        }
    }

    void Begin(WaveOutDevice& device) {
        device_ = &device;
        for (WaveHeader& header : headers_) {
            ASSERT_EQ(device.Prepare(header), WaveResult::kOk);
            Write(header);
        }
    }

    /// Writes an empty buffer, number 4.
    void End() {
        ASSERT_EQ(device_->Prepare(marker_), WaveResult::kOk);
        ASSERT_EQ(device_->Write(marker_), WaveResult::kOk);
    }

    void OnWaveOutDone(WaveHeader& header) override {
        done.push_back(header.user);
        if (&header != &marker_) Write(header);
    }
    void OnWaveOutLost(WaveLoss reason) override { losses.push_back(reason); }

    std::vector<std::uint32_t> done;
    std::vector<WaveLoss> losses;
    bool stopped = false;

  private:
    void Write(WaveHeader& header) {
        std::vector<std::int16_t>& memory = memory_[header.user];
        if (stopped || at_ + memory.size() > sound_.size()) return;
        std::copy_n(sound_.begin() + static_cast<std::ptrdiff_t>(at_), memory.size(),
                    memory.begin());
        at_ += memory.size();
        ASSERT_EQ(device_->Write(header), WaveResult::kOk);
    }

    std::vector<std::int16_t> sound_;
    std::size_t at_ = 0;
    std::deque<std::vector<std::int16_t>> memory_;
    std::deque<WaveHeader> headers_;
    WaveHeader marker_{nullptr, 0, 0, 4};
    WaveOutDevice* device_ = nullptr;
};

}  // namespace orma::test
