#include "audio/files/mp2_decoder.h"

#include <algorithm>
#include <cassert>

#include <mad.h>

namespace orma {
namespace {

constexpr std::size_t kHeaderBytes = 4;
constexpr int kMaxLogLines = 100;

/// A fixed-point sample of the library, 28 fractional bits, as 16 bits.
std::int16_t ToSample(mad_fixed_t value) {
    // 64 bits: what hostile frames synthesise to may lie anywhere in 32.
    constexpr std::int64_t kHalf = 4096;
    constexpr std::int64_t kLimit = 1 << MAD_F_FRACBITS;
    return static_cast<std::int16_t>(std::clamp(value + kHalf, -kLimit, kLimit - 1) >> 13);
}

/// The library's own error for a header that it must not see, or MAD_ERROR_NONE.
mad_error HeaderError(const Mp2Header& header) {
    if (!header.IsLayer2()) return MAD_ERROR_LOSTSYNC;
    if (header.BitrateIndex() == 0 || header.BitrateIndex() == 15) return MAD_ERROR_BADBITRATE;
    if (header.SamplingBits() == 3) return MAD_ERROR_BADSAMPLERATE;
    return MAD_ERROR_NONE;
}

}  // namespace

struct Mp2Decoder::State {
    // The largest frame (384 kbit/s, 44100 Hz, padded) with the next header and the library's
    // guard. The rest is reserve: a frame whose fields ask for more bits than it has, at most 30
    // subbands of 36 samples of 16 bits in 2 channels, still ends inside.
    static constexpr std::size_t kSpaceBytes = 8192;

    State() {
        mad_stream_init(&stream);
        mad_frame_init(&frame);
        mad_synth_init(&synth);
    }
    ~State() {
        mad_synth_finish(&synth);
        mad_frame_finish(&frame);
        mad_stream_finish(&stream);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void Take(const Mp2Header& next, std::uint32_t settingFrameBytes) {
        header = next;
        frameBytes = next.FrameBytes(settingFrameBytes);
        std::ranges::copy(next.bytes, space.begin());
    }

    mad_stream stream;
    mad_frame frame;
    mad_synth synth;
    Mp2Header header;
    std::uint32_t frameBytes = 0;
    std::array<std::uint8_t, kSpaceBytes> space{};
};

Mp2Decoder::Mp2Decoder(const AudioState& audio, Storage& storage, Text diagnosticsPath)
    : audio_(audio), storage_(storage), diagnosticsPath_(std::move(diagnosticsPath)) {}

Mp2Decoder::~Mp2Decoder() = default;

void Mp2Decoder::Mp2DecoderStart(const Mp2Header& header) {
    if (IsActive()) return;
    state_ = std::make_unique<State>();
    logLines_ = 0;
    GoOnAt(header);
}

void Mp2Decoder::GoOnAt(const Mp2Header& header) {
    if (IsActive()) state_->Take(header, audio_.bitrate.FrameBytes());
}

std::span<std::uint8_t> Mp2Decoder::FrameSpace() {
    if (!IsActive()) return {};
    return std::span(state_->space).subspan(kHeaderBytes, state_->frameBytes);
}

std::uint32_t Mp2Decoder::FrameBytes() const {
    return IsActive() ? state_->frameBytes : audio_.bitrate.FrameBytes();
}

std::size_t Mp2Decoder::Mp2DecodeFrame(std::span<std::int16_t> out, unsigned& channels) {
    if (!IsActive()) return 0;
    assert(out.size() >= 2 * kMp2FrameSamples);
    const bool decoded = DecodeInSpace();
    const std::uint8_t* next = state_->space.data() + state_->frameBytes;
    state_->Take({{next[0], next[1], next[2], next[3]}}, audio_.bitrate.FrameBytes());
    if (!decoded) return 0;

    mad_synth_frame(&state_->synth, &state_->frame);
    const mad_pcm& pcm = state_->synth.pcm;
    channels = pcm.channels;
    auto sample = out.begin();
    for (unsigned i = 0; i < pcm.length; ++i) {
        for (unsigned channel = 0; channel < channels; ++channel) {
            *sample++ = ToSample(pcm.samples[channel][i]);
        }
    }
    return pcm.length;
}

/// True when the frame in the buffer was decoded, otherwise the reason is logged. There is no way
/// to go on after an error that the library calls unrecoverable: too few bytes stop, missing memory
/// breaks off. Either ends this frame alone.
bool Mp2Decoder::DecodeInSpace() {
    mad_error error = HeaderError(state_->header);
    if (error == MAD_ERROR_NONE) {
        mad_stream& stream = state_->stream;
        mad_stream_buffer(&stream, state_->space.data(), state_->frameBytes + MAD_BUFFER_GUARD);
        if (mad_frame_decode(&state_->frame, &stream) == 0) return true;
        error = stream.error;
    }
    if (MAD_RECOVERABLE(error)) {
        Log(Format("MAD_RECOVERABLE %d", static_cast<int>(error)));
    } else {
        Log(error == MAD_ERROR_NOMEM ? "MAD_FLOW_BREAK" : "MAD_FLOW_STOP");
    }
    return false;
}

void Mp2Decoder::Mp2DecoderFinish() {
    state_.reset();
}

/// Appends a line. The file is open for that line only, so that it is complete after a crash; a
/// line that cannot be written is dropped, because playback must go on.
void Mp2Decoder::Log(const std::string& line) {
    if (diagnosticsPath_.empty() || logLines_ >= kMaxLogLines) return;
    ++logLines_;
    std::unique_ptr<StorageFile> file;
    const OpenMode append{.access = Access::kWrite, .disposition = Disposition::kOpenAlways};
    std::uint64_t end = 0;
    if (storage_.Open(diagnosticsPath_, append, file) != 0) return;
    if (file->Seek(0, SeekFrom::kEnd, end) != 0) return;
    const std::string text = line + "\n";
    std::size_t written = 0;
    (void)file->Write(AsBytes(text), written);
}

}  // namespace orma
