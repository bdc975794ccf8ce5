#include "platform/alsa/alsa_spdif_card.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <system_error>
#include <thread>

#include <alsa/asoundlib.h>

#include "base/trace.h"
#include "platform/alsa/digital_frames.h"
#include "platform/sound_ring.h"

namespace orma {
namespace {

constexpr std::uint32_t kBacklogSeconds = 10;
constexpr std::uint32_t kDefaultRate = 48000;
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

/// The rate that the receiver reads in the signal, Hz; 0 when the card does not tell.
std::uint32_t RateOfChannelStatus(snd_pcm_t* pcm) {
    snd_pcm_info_t* info = nullptr;
    snd_pcm_info_alloca(&info);
    if (snd_pcm_info(pcm, info) < 0 || snd_pcm_info_get_card(info) < 0) return 0;
    const std::string name = "hw:" + std::to_string(snd_pcm_info_get_card(info));
    snd_hctl_t* opened = nullptr;
    if (snd_hctl_open(&opened, name.c_str(), SND_CTL_READONLY) < 0) return 0;
    const std::unique_ptr<snd_hctl_t, CloseControl> control(opened);
    if (snd_hctl_load(opened) < 0) return 0;
    snd_ctl_elem_id_t* id = nullptr;
    snd_ctl_elem_id_alloca(&id);
    snd_ctl_elem_id_set_interface(id, SND_CTL_ELEM_IFACE_PCM);
    snd_ctl_elem_id_set_name(id, "IEC958 Capture Default");
    snd_ctl_elem_id_set_device(id, snd_pcm_info_get_device(info));
    snd_hctl_elem_t* element = snd_hctl_find_elem(opened, id);
    snd_ctl_elem_value_t* value = nullptr;
    snd_ctl_elem_value_alloca(&value);
    if (element == nullptr || snd_hctl_elem_read(element, value) < 0) return 0;
    snd_aes_iec958_t status{};
    snd_ctl_elem_value_get_iec958(value, &status);
    return DigitalRateOfStatus({status.status, sizeof status.status});
}

/// Sets the device up for stereo at one rate; false when it takes none of the layouts.
bool SetUp(snd_pcm_t* pcm, std::uint32_t& rate, DigitalLayout& layout) {
    snd_pcm_hw_params_t* params = nullptr;
    snd_pcm_hw_params_alloca(&params);
    if (snd_pcm_hw_params_any(pcm, params) < 0 ||
        snd_pcm_hw_params_set_access(pcm, params, SND_PCM_ACCESS_RW_INTERLEAVED) < 0 ||
        snd_pcm_hw_params_set_channels(pcm, params, 2) < 0)
        return false;
    const auto fits = std::ranges::find_if(kLayouts, [&](const Layout& candidate) {
        return snd_pcm_hw_params_set_format(pcm, params, candidate.format) == 0;
    });
    if (fits == kLayouts.end()) return false;
    layout = fits->layout;
    unsigned low = 0;
    unsigned high = 0;
    if (rate == 0 && snd_pcm_hw_params_get_rate_min(params, &low, nullptr) == 0 &&
        snd_pcm_hw_params_get_rate_max(params, &high, nullptr) == 0)
        rate = low == high ? low : kDefaultRate;
    unsigned buffer = kBufferMicroseconds;
    unsigned period = kPeriodMicroseconds;
    return snd_pcm_hw_params_set_rate(pcm, params, rate, 0) == 0 &&
           snd_pcm_hw_params_set_buffer_time_near(pcm, params, &buffer, nullptr) == 0 &&
           snd_pcm_hw_params_set_period_time_near(pcm, params, &period, nullptr) == 0 &&
           snd_pcm_hw_params(pcm, params) == 0;
}

}  // namespace

/// The open device and its thread.
struct AlsaSpdifCard::Capture {
    std::unique_ptr<snd_pcm_t, ClosePcm> pcm;
    DigitalLayout layout;
    std::uint32_t rate;  // Hz
    SoundRing backlog;
    std::atomic<bool> running = false;
    std::atomic<std::uint64_t> lostFrames = 0;
    std::thread thread;

    Capture(std::unique_ptr<snd_pcm_t, ClosePcm> opened, DigitalLayout samples, std::uint32_t hz)
        : pcm(std::move(opened)),
          layout(samples),
          rate(hz),
          backlog(std::size_t{kBacklogSeconds} * hz * kFrameBytes) {}
    ~Capture() { Stop(); }

    bool Start() {
        Stop();
        if (snd_pcm_prepare(pcm.get()) < 0 || snd_pcm_start(pcm.get()) < 0) return false;
        lostFrames = 0;
        running = true;
        try {
            thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            running = false;
        }
        return running;
    }

    void Stop() {
        running = false;
        if (thread.joinable()) thread.join();
        snd_pcm_drop(pcm.get());
    }

    void Run() {
        std::array<std::uint8_t, kChunkFrames * 8> chunk{};
        std::array<std::uint8_t, kChunkFrames * kFrameBytes> frames{};
        const std::size_t deviceFrame = 2 * BytesOfSample(layout);
        while (running) {
            snd_pcm_sframes_t got = snd_pcm_readi(pcm.get(), chunk.data(), kChunkFrames);
            if (got == -EAGAIN) got = snd_pcm_wait(pcm.get(), kWaitMs) < 0 ? -EPIPE : 0;
            if (got < 0) {
                if (snd_pcm_recover(pcm.get(), static_cast<int>(got), 1) < 0 ||
                    snd_pcm_start(pcm.get()) < 0)
                    return;
                // The driver does not tell how much it lost: one frame stands for each report.
                lostFrames.fetch_add(1, std::memory_order_relaxed);
                continue;
            }
            const auto count = static_cast<std::size_t>(got);
            PackDigitalSamples(layout, ByteSpan(chunk).first(count * deviceFrame), frames);
            const std::size_t kept =
                backlog.Write(ByteSpan(frames).first(count * kFrameBytes), kFrameBytes);
            if (kept < count * kFrameBytes)
                lostFrames.fetch_add(count - kept / kFrameBytes, std::memory_order_relaxed);
        }
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
    std::uint32_t rate = options_.rate != 0 ? options_.rate : RateOfChannelStatus(pcm);
    DigitalLayout layout{};
    if (!SetUp(pcm, rate, layout)) {
        Trace("alsa: digital input %s takes no stereo at %u Hz", name.c_str(), rate);
        return false;
    }
    Trace("alsa: digital input %s at %u Hz", name.c_str(), rate);
    ring_.resize(kRingBytes);
    register_ = 0;
    capture_ = std::make_unique<Capture>(std::move(owned), layout, rate);
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
            return capture_->Start();
        case SpdifControl::kReadRate:
            answer[0] = SpdifCodeOfRate(capture_->rate);
            return true;
        case SpdifControl::kReadStatus:
            return true;
        case SpdifControl::kStop:
            capture_->Stop();
            return true;
    }
    return false;
}

std::uint32_t AlsaSpdifCard::WritePosition() {
    if (!capture_) return writePosition_;
    // A frame stays free: a full ring would look like an empty one.
    const std::uint32_t used = (writePosition_ + kRingBytes - readPosition_) % kRingBytes;
    const std::size_t room = (kRingBytes - used) / kFrameBytes * kFrameBytes - kFrameBytes;
    std::size_t bytes = std::min(room, capture_->backlog.Available());
    while (bytes > 0) {
        const std::size_t piece = std::min<std::size_t>(bytes, kRingBytes - writePosition_);
        (void)capture_->backlog.Read(std::span(ring_).subspan(writePosition_, piece));
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
