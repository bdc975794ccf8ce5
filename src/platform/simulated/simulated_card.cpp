#include "platform/simulated/simulated_card.h"

#include <algorithm>
#include <thread>

namespace orma {
namespace {

constexpr std::uint16_t kStandby = 1U << 3;
constexpr std::uint16_t kPowerOnRegister = 0x0100 | kStandby;
constexpr std::uint8_t kNotLocked = 1;  // the code of "not indicated"
constexpr std::uint16_t kNoValidSignal = 1;
constexpr std::uint32_t kFastLooksPerSecond = 20;

}  // namespace

SimulatedCard::SimulatedCard(SimulatedCardOptions options, Now now)
    : options_(std::move(options)), now_(std::move(now)), ring_(kRingBytes) {}

bool SimulatedCard::Open() {
    if (options_.fault == SimulatedFault::kNoDriver || sound_ != nullptr) return false;
    sound_ = DigitalSound::Open(options_.file);
    register_ = kPowerOnRegister;
    ringSet_ = selected_ = begun_ = false;
    rateReads_ = 0;
    dueFrames_ = framesMade_ = 0;
    return sound_ != nullptr;
}

void SimulatedCard::Close() {
    sound_.reset();
}

bool SimulatedCard::Control(SpdifControl code, ByteSpan input, Answer& answer) {
    if (sound_ == nullptr) return false;
    answer.fill(0);
    switch (code) {
        case SpdifControl::kReadRegister:
            StoreLe(answer.data(), register_);
            return true;
        case SpdifControl::kWriteRegister:
            if (input.size() < 2) return false;
            register_ = LoadLe<std::uint16_t>(input.data());
            return true;
        case SpdifControl::kSetRing:
            return SetRing(input);
        case SpdifControl::kSelectInput:
            if (input.empty() || options_.fault == SimulatedFault::kNoCard) return false;
            selectedInput_ = input[0];
            selected_ = true;
            return true;
        case SpdifControl::kReadRate:
            answer[0] = RateCode();
            return true;
        case SpdifControl::kReadStatus:
            if (options_.fault == SimulatedFault::kNoSignal) StoreLe(answer.data(), kNoValidSignal);
            return true;
        case SpdifControl::kStop:
            dueFrames_ = options_.fast ? framesMade_ : DueFrames();
            selected_ = false;
            return true;
    }
    return false;
}

bool SimulatedCard::SetRing(ByteSpan block) {
    if (block.size() != SpdifRingBlock::kBytes) return false;
    const auto ring = SpdifRingBlock::Decode(block.first<SpdifRingBlock::kBytes>());
    ringSet_ = std::uint64_t{2} * ring.size == kRingBytes &&
               std::max(ring.writePosition, ring.readPosition) < kRingBytes;
    writePosition_ = ring.writePosition;
    readPosition_ = ring.readPosition;
    return ringSet_;
}

std::uint8_t SimulatedCard::RateCode() {
    if (++rateReads_ < 2) return kNotLocked;
    return SpdifCodeOfRate(sound_->SampleRate());
}

bool SimulatedCard::IsCapturing() const {
    return sound_ != nullptr && ringSet_ && selected_ && (register_ & kStandby) == 0;
}

/// Frames that have come in by now.
std::uint64_t SimulatedCard::DueFrames() {
    if (!IsCapturing()) return dueFrames_;
    const std::uint64_t hz = sound_->SampleRate();
    std::uint64_t due = framesMade_;
    if (options_.fast) {
        due += hz / kFastLooksPerSecond;
    } else if (begun_) {
        const auto passed = std::chrono::duration_cast<std::chrono::microseconds>(now_() - begin_);
        due = static_cast<std::uint64_t>(passed.count()) * hz / 1'000'000;
    }
    return options_.stallSeconds ? std::min(due, *options_.stallSeconds * hz) : due;
}

std::uint32_t SimulatedCard::WritePosition() {
    if (!begun_ && IsCapturing()) {
        begun_ = true;
        begin_ = now_();
    }
    dueFrames_ = DueFrames();
    // A frame stays free: a full ring would look like an empty one.
    const std::uint32_t used = (writePosition_ + kRingBytes - readPosition_) % kRingBytes;
    std::uint64_t frames = std::min<std::uint64_t>(dueFrames_ - std::min(dueFrames_, framesMade_),
                                                   (kRingBytes - used) / kFrameBytes - 1);
    framesMade_ += frames;
    while (frames > 0) {
        const std::uint64_t piece =
            std::min<std::uint64_t>(frames, (kRingBytes - writePosition_) / kFrameBytes);
        const auto bytes = static_cast<std::uint32_t>(piece * kFrameBytes);
        sound_->Read(std::span(ring_).subspan(writePosition_, bytes));
        writePosition_ = (writePosition_ + bytes) % kRingBytes;
        frames -= piece;
    }
    return writePosition_;
}

void SimulatedCard::Wait(std::uint32_t ms) {
    if (!options_.fast) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

}  // namespace orma
