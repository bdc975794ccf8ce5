#include "platform/alsa/alsa_spdif_card.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <optional>
#include <system_error>
#include <thread>

#include <alsa/asoundlib.h>

#include "base/trace.h"
#include "platform/alsa/digital_frames.h"
#include "platform/sound_ring.h"

namespace orma {
namespace {

constexpr std::uint32_t kBacklogSeconds = 10;
constexpr unsigned kBufferMicroseconds = 500'000;
constexpr unsigned kPeriodMicroseconds = 20'000;
constexpr int kWaitMs = 100;
constexpr std::size_t kChunkFrames = 1024;

struct Layout {
    snd_pcm_format_t format;
    DigitalLayout layout;
};
constexpr std::array<Layout, 4> kLayouts{{{SND_PCM_FORMAT_S24_3LE, DigitalLayout::k24In3Bytes},
                                          {SND_PCM_FORMAT_S32_LE, DigitalLayout::k24InUpper32},
                                          {SND_PCM_FORMAT_S24_LE, DigitalLayout::k24In4Bytes},
                                          {SND_PCM_FORMAT_S16_LE, DigitalLayout::k16}}};

std::string DeviceName(const AlsaSpdifOptions& options) {
    if (!options.pcm.empty()) return options.pcm;
    const auto input = FindDigitalInput(ParseAlsaCaptures(ReadAlsaListing(options.folder, "pcm")));
    if (!input) return {};
    return "hw:" + std::to_string(input->card) + "," + std::to_string(input->device);
}

struct ClosePcm {
    void operator()(snd_pcm_t* pcm) const { snd_pcm_close(pcm); }
};

struct CloseControl {
    void operator()(snd_hctl_t* control) const { snd_hctl_close(control); }
};

/// The rate that the receiver reads in the signal now, Hz, 0 while it reads none; nothing for a
/// device that never tells.
std::optional<std::uint32_t> RateOfChannelStatus(snd_pcm_t* pcm) {
    snd_pcm_info_t* info = nullptr;
    snd_pcm_info_alloca(&info);
    if (snd_pcm_info(pcm, info) < 0 || snd_pcm_info_get_card(info) < 0) return std::nullopt;
    const std::string name = "hw:" + std::to_string(snd_pcm_info_get_card(info));
    snd_hctl_t* opened = nullptr;
    if (snd_hctl_open(&opened, name.c_str(), SND_CTL_READONLY) < 0) return std::nullopt;
    const std::unique_ptr<snd_hctl_t, CloseControl> control(opened);
    if (snd_hctl_load(opened) < 0) return std::nullopt;
    snd_ctl_elem_id_t* id = nullptr;
    snd_ctl_elem_id_alloca(&id);
    snd_ctl_elem_id_set_interface(id, SND_CTL_ELEM_IFACE_PCM);
    snd_ctl_elem_id_set_name(id, "IEC958 Capture Default");
    snd_ctl_elem_id_set_device(id, snd_pcm_info_get_device(info));
    snd_hctl_elem_t* element = snd_hctl_find_elem(opened, id);
    if (element == nullptr) return std::nullopt;
    snd_ctl_elem_value_t* value = nullptr;
    snd_ctl_elem_value_alloca(&value);
    if (snd_hctl_elem_read(element, value) < 0) return 0;
    snd_aes_iec958_t status{};
    snd_ctl_elem_value_get_iec958(value, &status);
    return DigitalRateOfStatus({status.status, sizeof status.status});
}

/// Narrows `params` down to stereo in one of the layouts; false when the device takes none.
bool TakeLayout(snd_pcm_t* pcm, snd_pcm_hw_params_t* params, DigitalLayout& layout) {
    if (snd_pcm_hw_params_any(pcm, params) < 0 ||
        snd_pcm_hw_params_set_access(pcm, params, SND_PCM_ACCESS_RW_INTERLEAVED) < 0 ||
        snd_pcm_hw_params_set_channels(pcm, params, 2) < 0)
        return false;
    const auto fits = std::ranges::find_if(kLayouts, [&](const Layout& candidate) {
        return snd_pcm_hw_params_set_format(pcm, params, candidate.format) == 0;
    });
    if (fits == kLayouts.end()) return false;
    layout = fits->layout;
    return true;
}

/// Whether the device takes stereo at all, and the only rate that it has, Hz, else 0.
bool Ask(snd_pcm_t* pcm, std::uint32_t& onlyRate) {
    snd_pcm_hw_params_t* params = nullptr;
    snd_pcm_hw_params_alloca(&params);
    DigitalLayout layout{};
    unsigned low = 0;
    unsigned high = 0;
    if (!TakeLayout(pcm, params, layout)) return false;
    const bool one = snd_pcm_hw_params_get_rate_min(params, &low, nullptr) == 0 &&
                     snd_pcm_hw_params_get_rate_max(params, &high, nullptr) == 0 && low == high;
    onlyRate = one ? low : 0;
    return true;
}

/// Sets the device up for stereo at one rate.
bool SetUp(snd_pcm_t* pcm, std::uint32_t rate, DigitalLayout& layout) {
    snd_pcm_hw_params_t* params = nullptr;
    snd_pcm_hw_params_alloca(&params);
    unsigned buffer = kBufferMicroseconds;
    unsigned period = kPeriodMicroseconds;
    return TakeLayout(pcm, params, layout) &&
           snd_pcm_hw_params_set_rate(pcm, params, rate, 0) == 0 &&
           snd_pcm_hw_params_set_buffer_time_near(pcm, params, &buffer, nullptr) == 0 &&
           snd_pcm_hw_params_set_period_time_near(pcm, params, &period, nullptr) == 0 &&
           snd_pcm_hw_params(pcm, params) == 0;
}

}  // namespace

/// The open device and its thread.
struct AlsaSpdifCard::Capture {
    std::unique_ptr<snd_pcm_t, ClosePcm> pcm;
    std::uint32_t fixedRate;  // Hz, of a device that does not tell; 0: unknown
    std::uint32_t rate = 0;   // Hz, of what is captured; 0: nothing is
    DigitalLayout layout{};
    std::unique_ptr<SoundRing> backlog;
    std::atomic<bool> running = false;
    std::atomic<std::uint64_t> lostFrames = 0;
    std::thread thread;

    Capture(std::unique_ptr<snd_pcm_t, ClosePcm> opened, std::uint32_t hz)
        : pcm(std::move(opened)), fixedRate(hz) {}
    ~Capture() { Stop(); }

    bool Start(std::uint32_t hz) {
        Stop();
        if (!SetUp(pcm.get(), hz, layout) || snd_pcm_prepare(pcm.get()) < 0 ||
            snd_pcm_start(pcm.get()) < 0) {
            Trace("alsa: digital input takes no stereo at %u Hz", hz);
            return false;
        }
        Trace("alsa: digital input at %u Hz", hz);
        backlog = std::make_unique<SoundRing>(std::size_t{kBacklogSeconds} * hz * kFrameBytes);
        lostFrames = 0;
        running = true;
        try {
            thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            running = false;
        }
        rate = running ? hz : 0;
        return running;
    }

    void Stop() {
        running = false;
        if (thread.joinable()) thread.join();
        snd_pcm_drop(pcm.get());
        rate = 0;
    }

    void Run() {
        std::array<std::uint8_t, kChunkFrames * 8> chunk{};
        std::array<std::uint8_t, kChunkFrames * kFrameBytes> frames{};
        const std::size_t deviceFrame = 2 * BytesOfSample(layout);
        while (running) {
            snd_pcm_sframes_t got = snd_pcm_readi(pcm.get(), chunk.data(), kChunkFrames);
            if (got == -EAGAIN) got = snd_pcm_wait(pcm.get(), kWaitMs) < 0 ? -EPIPE : 0;
            if (got < 0) {
                if (!Recover(static_cast<int>(got))) break;
                // The driver does not tell how much it lost: one frame stands for each report.
                lostFrames.fetch_add(1, std::memory_order_relaxed);
                continue;
            }
            const auto count = static_cast<std::size_t>(got);
            PackDigitalSamples(layout, ByteSpan(chunk).first(count * deviceFrame), frames);
            const std::size_t kept =
                backlog->Write(ByteSpan(frames).first(count * kFrameBytes), kFrameBytes);
            if (kept < count * kFrameBytes)
                lostFrames.fetch_add(count - kept / kFrameBytes, std::memory_order_relaxed);
        }
        running = false;
    }

    /// Capture runs again. A device that was interrupted or suspended may never have stopped, and
    /// one that runs refuses to be started.
    bool Recover(int error) {
        if (snd_pcm_recover(pcm.get(), error, 1) < 0) return false;
        return snd_pcm_state(pcm.get()) != SND_PCM_STATE_PREPARED || snd_pcm_start(pcm.get()) == 0;
    }
};

AlsaSpdifCard::AlsaSpdifCard(AlsaSpdifOptions options) : options_(std::move(options)) {}

AlsaSpdifCard::~AlsaSpdifCard() = default;

Text AlsaSpdifCard::Name() {
    return FromUtf8(DeviceName(options_));
}

bool AlsaSpdifCard::Open() {
    const std::string name = DeviceName(options_);
    if (capture_ || name.empty()) return false;
    SilenceAlsa();
    snd_pcm_t* pcm = nullptr;
    const int error = snd_pcm_open(&pcm, name.c_str(), SND_PCM_STREAM_CAPTURE, SND_PCM_NONBLOCK);
    if (error < 0) {
        Trace("alsa: digital input %s: %s", name.c_str(), snd_strerror(error));
        return false;
    }
    std::unique_ptr<snd_pcm_t, ClosePcm> owned(pcm);
    std::uint32_t onlyRate = 0;
    if (!Ask(pcm, onlyRate)) {
        Trace("alsa: digital input %s takes no stereo", name.c_str());
        return false;
    }
    Trace("alsa: digital input %s", name.c_str());
    ring_.resize(kRingBytes);
    register_ = 0;
    capture_ = std::make_unique<Capture>(std::move(owned), onlyRate);
    return true;
}

bool AlsaSpdifCard::Control(SpdifControl code, ByteSpan input, Answer& answer) {
    if (!capture_) return false;
    answer.fill(0);
    switch (code) {
        case SpdifControl::kReadRegister:
            StoreLe(answer.data(), register_);
            return true;
        case SpdifControl::kWriteRegister:
            if (input.size() < 2) return false;
            register_ = LoadLe<std::uint16_t>(input.data());
            return true;
        case SpdifControl::kSetRing: {
            if (input.size() != SpdifRingBlock::kBytes) return false;
            const auto block = SpdifRingBlock::Decode(input.first<SpdifRingBlock::kBytes>());
            if (std::max(block.writePosition, block.readPosition) >= kRingBytes) return false;
            writePosition_ = block.writePosition;
            readPosition_ = block.readPosition;
            return true;
        }
        case SpdifControl::kSelectInput:
            return true;
        case SpdifControl::kReadRate:
            answer[0] = SpdifCodeOfRate(LockedRate());
            return true;
        case SpdifControl::kReadStatus:
            answer[0] = capture_->running ? 0 : 1;
            return true;
        case SpdifControl::kStop:
            capture_->Stop();
            return true;
    }
    return false;
}

/// Looks at the signal again, for a receiver locks after it was opened, and captures at the rate
/// that is found.
std::uint32_t AlsaSpdifCard::LockedRate() {
    std::uint32_t rate = options_.rate;
    if (rate == 0) rate = RateOfChannelStatus(capture_->pcm.get()).value_or(capture_->fixedRate);
    const bool captured = capture_->running && capture_->rate == rate;
    if (!captured && (rate == 0 || !capture_->Start(rate))) capture_->Stop();
    return capture_->rate;
}

std::uint32_t AlsaSpdifCard::WritePosition() {
    if (!capture_ || !capture_->backlog) return writePosition_;
    // A frame stays free: a full ring would look like an empty one.
    const std::uint32_t used = (writePosition_ + kRingBytes - readPosition_) % kRingBytes;
    const std::size_t room = (kRingBytes - used) / kFrameBytes * kFrameBytes - kFrameBytes;
    std::size_t bytes = std::min(room, capture_->backlog->Available());
    while (bytes > 0) {
        const std::size_t piece = std::min<std::size_t>(bytes, kRingBytes - writePosition_);
        (void)capture_->backlog->Read(std::span(ring_).subspan(writePosition_, piece));
        writePosition_ = static_cast<std::uint32_t>((writePosition_ + piece) % kRingBytes);
        bytes -= piece;
    }
    return writePosition_;
}

std::uint64_t AlsaSpdifCard::LostFrames() const {
    return capture_ ? capture_->lostFrames.load(std::memory_order_relaxed) : 0;
}

void AlsaSpdifCard::Wait(std::uint32_t ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

void AlsaSpdifCard::Close() {
    capture_.reset();
}

}  // namespace orma
