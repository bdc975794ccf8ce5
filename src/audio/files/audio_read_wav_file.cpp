#include "audio/files/audio_read_wav_file.h"

#include <algorithm>

#include "audio/files/riff_walk.h"

namespace orma {
namespace {

// One period of 50 ms at 48000 Hz, so that at that resolution a buffer is one read.
constexpr std::size_t kStep = 2400;
// Samples per channel that one read takes: a step at the largest ratio of rates, with the
// converter's reach.
constexpr std::size_t kReadFrames = 5600;
constexpr std::size_t kReadBytes = kReadFrames * 2 * 4;
constexpr std::uint16_t kFloat = 3;

bool IsKnownRate(std::uint32_t rate) {
    return rate == 44100 || rate == 48000 || rate == 88200 || rate == 96000;
}

unsigned RateCode(std::uint32_t rate, bool externalRecorder) {
    switch (rate) {
        case 48000:
            return externalRecorder ? 0 : 1;
        case 88200:
            return 2;
        case 96000:
            return 3;
        default:
            return 0;
    }
}

}  // namespace

std::uint32_t JStreamAudioReadWavFile::Measure() {
    measured_ = false;
    if (!OpenForMeasuring()) return 0;
    const RiffContent content = WalkRiff(*this);
    ErrorReporter& report = services_.files.report;
    if (content.format.channels != 1 && content.format.channels != 2) {
        report.ShowError(u"Only mono or stereo allowed.");
        return 0;
    }
    if (!IsKnownRate(content.format.sampleRate)) {
        report.ShowError(u"Wrong sample-rate");
        return 0;
    }
    if (content.format.bitsPerSample < 16 || content.format.tag == kFloat) {
        report.ShowError(u"Only 16 or 24-bits\nsamples allowed.");
        return 0;
    }
    AudioState& audio = services_.audio;
    audio.sampleRate = content.format.sampleRate;
    if (content.dataLength == 0 || content.dataOffset == 0 ||
        content.dataLength > GetSize() - content.dataOffset) {
        report.ShowError(u"WavOpenFile No Data");
        return 0;
    }
    audio.bitsPerSample = content.format.bitsPerSample;
    format_.channels = content.format.channels;
    format_.sampleRate = content.format.sampleRate;
    format_.bitsPerSample = content.format.bitsPerSample;
    format_.dataOffset = content.dataOffset;
    format_.dataLength = content.dataLength;
    format_.rateCode = RateCode(content.format.sampleRate, audio.externalRecorder);
    const std::uint64_t monoBytes = MonoPeriodBytes(format_.sampleRate) >> audio.resolutionShift;
    format_.bytesPerPeriod = static_cast<std::uint32_t>(monoBytes * FrameBytes() / 2);
    const std::uint32_t periods = format_.dataLength / format_.bytesPerPeriod;
    measured_ = periods > 0;
    return periods;
}

void JStreamAudioReadWavFile::OpenAt(std::uint32_t period, const PlaybackFormat& output) {
    if (!OpenMeasured()) return;
    output_ = output;
    queue_.Start(format_.sampleRate, output.sampleRate, output.channels, kStep, kReadFrames);
    raw_.resize(kReadBytes);
    samples_.resize(kReadFrames * format_.channels);
    SeekPeriod(period);
}

void JStreamAudioReadWavFile::SeekPeriod(std::uint32_t period) {
    const std::uint64_t offset = std::uint64_t{period} * format_.bytesPerPeriod;
    position_ = format_.dataOffset + std::min<std::uint64_t>(offset, format_.dataLength);
    SetPosition(static_cast<std::int32_t>(position_));
    queue_.Clear();
}

std::uint32_t JStreamAudioReadWavFile::PositionAt(std::uint32_t period) {
    SeekPeriod(period);
    return period;
}

void JStreamAudioReadWavFile::Get(std::span<std::uint8_t> buffer) {
    queue_.Fill(buffer, [this](std::size_t missing) { Refill(missing); });
}

void JStreamAudioReadWavFile::Refill(std::size_t missing) {
    const std::uint64_t end = std::uint64_t{format_.dataOffset} + format_.dataLength;
    const std::size_t left = IsOpen() ? (end - position_) / FrameBytes() : 0;
    const std::size_t frames = std::min({missing, left, kReadFrames, kReadBytes / FrameBytes()});
    if (frames == 0) {
        queue_.AppendSilence(std::min(missing, kReadFrames));
        return;
    }
    const std::size_t sampleBytes = SampleBytes();
    const std::size_t count = frames * format_.channels;
    ReadHeld(raw_.data(), static_cast<std::uint32_t>(count * sampleBytes));
    position_ += count * sampleBytes;
    // Little-endian: the upper two bytes of a sample are its last two.
    const std::uint8_t* upper = raw_.data() + sampleBytes - 2;
    for (std::size_t i = 0; i < count; ++i)
        samples_[i] = LoadLe<std::int16_t>(upper + i * sampleBytes);
    queue_.Append(std::span(samples_).first(count), format_.channels);
}

}  // namespace orma
