#include "audio/files/audio_read_mp2_file.h"

#include <algorithm>

#include "audio/files/riff_walk.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr std::uint32_t kSampleRate = 48000;
constexpr std::size_t kStep = 1050;  // output samples per channel made at a time
constexpr std::uint8_t kLayerAndVersion = 0x1E;
constexpr unsigned kSampling48000 = 1;

}  // namespace

JStreamAudioReadMP2File::~JStreamAudioReadMP2File() {
    EndDecoder();
}

std::uint32_t JStreamAudioReadMP2File::Measure() {
    measured_ = false;
    if (!OpenForMeasuring()) return 0;
    const AudioState& audio = services_.audio;
    std::array<std::uint8_t, 4> tag{};
    SetPosition(0);
    Read(tag.data(), tag.size());
    const std::uint32_t size = GetSize();
    RiffContent content;
    content.dataLength = size;
    if (IsTag(tag.data(), "RIFF")) {
        content = WalkRiff(*this);
        content.dataLength = std::min(content.dataLength, size - content.dataOffset);
        if (content.dataOffset == 0) content.dataLength = 0;
    }
    if (content.dataLength == 0) return 0;

    Mp2Header found;
    SetPosition(static_cast<std::int32_t>(content.dataOffset));
    Read(found.bytes.data(), static_cast<std::uint32_t>(found.bytes.size()));
    const Mp2Header expected = Mp2Header::ForSettings(audio);
    const char16_t* refusal = nullptr;
    if (((found.bytes[1] ^ expected.bytes[1]) & kLayerAndVersion) != 0)
        refusal = u"No mp2 file";
    else if (found.BitrateIndex() != audio.bitrate.Index() + 1)
        refusal = u"Wrong bitrate.";
    else if (found.SamplingBits() != kSampling48000)
        refusal = u"Wrong sample-rate.";
    else if (found.Mode() != expected.Mode())
        refusal = u"Wrong number of channels";
    if (refusal) {
        services_.files.report.ShowError(refusal);
        return 0;
    }
    frameBytes_ = audio.bitrate.FrameBytes();
    frameCount_ = content.dataLength / frameBytes_;
    services_.audio.bitsPerSample = 16;
    format_.channels = audio.Channels();
    format_.sampleRate = kSampleRate;
    format_.bitsPerSample = 16;
    format_.dataOffset = content.dataOffset;
    format_.dataLength = content.dataLength;
    format_.bytesPerPeriod = audio.bitrate.BytesPerPeriod(audio.resolutionShift);
    const std::uint32_t periods = content.dataLength / format_.bytesPerPeriod;
    measured_ = periods > 1;
    return measured_ ? periods - 1 : 0;
}

void JStreamAudioReadMP2File::OpenAt(std::uint32_t period, const PlaybackFormat& output) {
    if (!OpenMeasured()) return;
    output_ = output;
    queue_.Start(kSampleRate, output.sampleRate, output.channels, kStep, kMp2FrameSamples,
                 kMp2FrameSamples);
    SeekPeriod(period);
    services_.audio.bitsPerSample = 16;
    format_.rateCode = output.sampleRate == kSampleRate ? 0 : 1;
}

void JStreamAudioReadMP2File::CloseReader() {
    EndDecoder();
    Close();
}

void JStreamAudioReadMP2File::EndDecoder() {
    if (ownsDecoder_) services_.decoder.Mp2DecoderFinish();
    ownsDecoder_ = false;
}

Mp2Header JStreamAudioReadMP2File::ReadHeader() {
    Mp2Header header;
    Read(header.bytes.data(), static_cast<std::uint32_t>(header.bytes.size()));
    atHeader_ = false;
    return header;
}

void JStreamAudioReadMP2File::StartDecoder() {
    services_.decoder.Mp2DecoderFinish();
    services_.decoder.Mp2DecoderStart(ReadHeader());
    ownsDecoder_ = true;
}

void JStreamAudioReadMP2File::MoveToFrame(std::uint32_t frame) {
    frame_ = std::min(frame, frameCount_);
    const std::uint64_t offset = std::uint64_t{frame_} * frameBytes_ + format_.dataOffset;
    SetPosition(static_cast<std::int32_t>(offset));
    atHeader_ = true;
}

void JStreamAudioReadMP2File::SeekPeriod(std::uint32_t period) {
    MoveToFrame(Mp2FrameOfPeriod(period, services_.audio.resolutionShift));
    queue_.Clear();
    if (frame_ < frameCount_ && IsOpen()) StartDecoder();
}

std::uint32_t JStreamAudioReadMP2File::PositionAt(std::uint32_t period) {
    MoveToFrame(Mp2FrameOfPeriod(period, services_.audio.resolutionShift));
    return frame_;
}

void JStreamAudioReadMP2File::Get(std::span<std::uint8_t> buffer) {
    Trace("JStreamAudioReadMP2File Get");
    queue_.Fill(buffer, [this](std::size_t) {
        if (!DecodeFrame()) queue_.AppendSilence(kMp2FrameSamples);
    });
}

bool JStreamAudioReadMP2File::DecodeFrame() {
    if (frame_ >= frameCount_ || !IsOpen()) return false;
    Mp2Decoder& decoder = services_.decoder;
    if (!ownsDecoder_ || !decoder.IsActive()) {
        MoveToFrame(frame_);
        StartDecoder();
    } else if (atHeader_) {
        decoder.GoOnAt(ReadHeader());
    }
    unsigned channels = 1;
    std::size_t samples = 0;
    ++frame_;
    const std::span<std::uint8_t> space = decoder.FrameSpace();
    if (space.size() == frameBytes_) {
        Read(space.data(), frameBytes_);
        samples = decoder.Mp2DecodeFrame(decoded_, channels);
    }
    if (samples != kMp2FrameSamples) {
        damaged_ = true;
        MoveToFrame(frame_);  // damage: the next frame has its place and header all the same
        return false;
    }
    queue_.Append(std::span(decoded_).first(samples * channels), channels);
    return true;
}

bool AdoptMp2Bitrate(FileServices files, const Text& path, AudioState& audio,
                     ErrorReporter& report) {
    JStreamFile file(files, path, true);
    std::uint32_t header = 0;
    if (file.GetSize() < sizeof header) return false;
    file.ReadHeld(&header, sizeof header);
    if (!file.IsOpen()) return false;
    audio.bitrate.SetMp2Bitrate(((header >> 20) & 0xFU) - 1, report);
    return true;
}

}  // namespace orma
