#include "audio/engine/pdaudio_in.h"

#include <algorithm>
#include <cstring>

#include "audio/engine/spdif_format.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr std::uint16_t kRegisterBit3 = 1U << 3;
constexpr int kRateReads = 10;
constexpr std::uint32_t kRateReadMs = 10;

}  // namespace

PDAudioIn::PDAudioIn(SpdifCard* card, EventLoop& loop, Clock& clock, ErrorReporter& report)
    : card_(card), loop_(loop), clock_(clock), report_(report) {}

PDAudioIn::~PDAudioIn() {
    PDAudioClose();
}

SpdifResult PDAudioIn::PDAudioStart(bool mp2, std::uint16_t channels, unsigned shift,
                                    WaveInEvents& events, SpdifFormat& format) {
    PDAudioClose();
    lostFrames_ = 0;
    const SpdifResult result = Prepare(mp2, channels, shift, format);
    if (result != SpdifResult::kCapturing) {
        PDAudioClose();
        return result;
    }
    events_ = &events;
    stereo_ = channels == 2;
    sampleBytes_ = format.bitsPerSample / 8U;
    lastData_ = clock_.Ticks();
    delivery_ = loop_.CreateWakeup([this] { Deliver(); });
    timer_ = loop_.StartTimer(kPollMs, [this] { Poll(); });
    return result;
}

SpdifResult PDAudioIn::Prepare(bool mp2, std::uint16_t channels, unsigned shift,
                               SpdifFormat& format) {
    if (!OpenCard()) return SpdifResult::kNoDriver;
    SetRing();
    const std::array<std::uint8_t, 2> selection{selection_};
    if (!Control(SpdifControl::kSelectInput, selection)) return SpdifResult::kNoCard;
    const std::uint32_t rate = MeasureRate();
    const SpdifResult result = SpdifFormatOfRate(rate, mp2, channels, shift, format);
    Trace("S/PDIF rate=%u result=%d", rate, static_cast<int>(result));
    if (result != SpdifResult::kCapturing) return result;
    const std::array<std::uint8_t, 2> none{};
    if (!Control(SpdifControl::kReadStatus, none) || LoadLe<std::uint16_t>(answer_.data()) != 0) {
        report_.Boxes().Show({.text = u"Record Fail no S/PDIF input\n",
                              .title = u"PDAudio",
                              .icon = BoxIcon::kInformation});
        return SpdifResult::kNoSignal;
    }
    return result;
}

bool PDAudioIn::OpenCard() {
    if (card_ == nullptr || !card_->Open()) return false;
    open_ = true;
    std::array<std::uint8_t, 2> control{};
    if (Control(SpdifControl::kReadRegister, control)) {
        StoreLe(control.data(),
                static_cast<std::uint16_t>(LoadLe<std::uint16_t>(answer_.data()) & ~kRegisterBit3));
        Control(SpdifControl::kWriteRegister, control);
    }
    SetRing();
    return true;
}

bool PDAudioIn::Control(SpdifControl code, ByteSpan input) {
    const bool answered = card_->Control(code, input, answer_);
    if (!answered) Trace("S/PDIF control %X failed", static_cast<unsigned>(code));
    return answered;
}

bool PDAudioIn::SetRing() {
    readPosition_ = 0;
    return Control(SpdifControl::kSetRing, SpdifRingBlock{}.Encode());
}

/// A receiver needs a moment to lock on its signal; 0 when it never did.
std::uint32_t PDAudioIn::MeasureRate() {
    const std::array<std::uint8_t, 2> none{};
    for (int read = 0; read < kRateReads; ++read) {
        if (read > 0) card_->Wait(kRateReadMs);
        const bool answered = Control(SpdifControl::kReadRate, none);
        const std::uint32_t rate = answered ? SpdifRateOfCode(answer_[0]) : 0;
        if (rate != 0) return rate;
    }
    return 0;
}

bool PDAudioIn::PDAudioInAddBuffer(WaveHeader& header) {
    if (pending_[free_] != nullptr) return false;
    header.bytesRecorded = 0;
    pending_[free_] = &header;
    free_ = (free_ + 1) % kPlaces;
    if (flushing_) Flush();
    return true;
}

void PDAudioIn::Poll() {
    if (!open_) return;
    const std::uint32_t now = clock_.Ticks();
    if (const std::uint32_t available = Look(); available > 0) {
        lastData_ = now;
        Copy(available);
    } else if (now - lastData_ >= kTimeOutMs) {
        TimeOut();
    }
}

void PDAudioIn::TimeOut() {
    timer_.reset();
    // First the take, which this ends and keeps, then the box.
    events_->OnWaveInLost(WaveLoss::kStalled);
    report_.ShowError(u"Time-out");
}

/// The bytes in the card's ring, whole samples.
std::uint32_t PDAudioIn::Look() {
    const std::uint32_t write = card_->WritePosition();
    const std::uint64_t lost = card_->LostFrames();
    if (lost != lostFrames_)
        Trace("S/PDIF lost frames=%llu", static_cast<unsigned long long>(lost));
    lostFrames_ = lost;
    const std::uint32_t bytes =
        (write + SpdifCard::kRingBytes - readPosition_) % SpdifCard::kRingBytes;
    return bytes - bytes % SpdifCard::kSampleBytes;
}

/// Moves samples into the pending buffers until what is available is used up or no buffer is left;
/// returns the bytes taken from the ring.
std::uint32_t PDAudioIn::Copy(std::uint32_t available) {
    const ByteSpan ring = card_->Ring();
    std::uint32_t left = available;
    while (left > 0 && pending_[current_] != nullptr && doneCount_ < kPlaces) {
        WaveHeader& header = *pending_[current_];
        if (filled_ + sampleBytes_ > header.bufferLength) {
            HandBack();
            continue;
        }
        const bool second = readPosition_ % SpdifCard::kFrameBytes != 0;
        if (stereo_ || !second) {
            // Little-endian: the upper bytes stand at the end.
            const std::uint8_t* sample = &ring[readPosition_ + SpdifCard::kSampleBytes];
            std::memcpy(header.data + filled_, sample - sampleBytes_, sampleBytes_);
            filled_ += sampleBytes_;
        }
        readPosition_ = (readPosition_ + SpdifCard::kSampleBytes) % SpdifCard::kRingBytes;
        left -= SpdifCard::kSampleBytes;
        if (filled_ == header.bufferLength) HandBack();
    }
    card_->SetReadPosition(readPosition_);
    return available - left;
}

void PDAudioIn::PDAudioStop() {
    if (!open_) return;
    const std::array<std::uint8_t, 2> none{};
    Control(SpdifControl::kStop, none);
    timer_.reset();
    flushing_ = true;
    Flush();
}

/// Brings what the card captured before its stop into the buffers that there are, then hands back
/// the one in progress.
void PDAudioIn::Flush() {
    while (Copy(Look()) > 0) {
    }
    flushing_ = Look() > 0;
    if (!flushing_ && pending_[current_] != nullptr && doneCount_ < kPlaces) HandBack();
}

/// The current buffer goes back, marked as full; zeros where nothing was recorded.
void PDAudioIn::HandBack() {
    WaveHeader& header = *pending_[current_];
    std::memset(header.data + filled_, 0, header.bufferLength - filled_);
    header.bytesRecorded = header.bufferLength;
    pending_[current_] = nullptr;
    current_ = (current_ + 1) % kPlaces;
    filled_ = 0;
    done_[doneCount_++] = &header;
    delivery_->Signal();
}

void PDAudioIn::Deliver() {
    // As many as there are now: those that come meanwhile have signalled for themselves.
    for (std::size_t count = doneCount_; count > 0 && doneCount_ > 0; --count) {
        WaveHeader& header = *done_.front();
        std::rotate(done_.begin(), done_.begin() + 1, done_.end());
        --doneCount_;
        events_->OnWaveInData(header);
    }
}

void PDAudioIn::PDAudioClose() {
    timer_.reset();
    delivery_.reset();
    if (open_) card_->Close();
    open_ = false;
    flushing_ = false;
    pending_.fill(nullptr);
    current_ = free_ = 0;
    filled_ = 0;
    doneCount_ = 0;
}

}  // namespace orma
