#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "audio/files/audio_state.h"
#include "audio/files/rate_converter.h"
#include "base/bytes.h"
#include "report/error_reporter.h"

namespace orma {

class Layer2Encoder;

/// From PCM to blocks of MPEG-1 Layer II: a frame assembler of 1152 samples per channel, the
/// conversion to 48000 Hz, the encoder, and an output block of 8192 bytes. One instance serves one
/// stream at a time and is started again for the next. No allocation while feeding. UI thread.
class Mp2Pipeline {
  public:
    static constexpr std::size_t kBlockBytes = 8192;

    /// Takes encoded bytes: whole blocks of 8192, and at the flush what is left.
    using BlockOutput = std::function<void(ByteSpan block)>;

    /// Sees each encoded frame as it enters the output block.
    using FrameWatch = std::function<void(ByteSpan frame)>;

    /// `audio` supplies the bit rate; both outlive the pipeline.
    Mp2Pipeline(const AudioState& audio, ErrorReporter& report);
    ~Mp2Pipeline();
    Mp2Pipeline(const Mp2Pipeline&) = delete;
    Mp2Pipeline& operator=(const Mp2Pipeline&) = delete;

    /// Starts a stream of one channel or two (plain stereo) at the current bit rate, dropping
    /// whatever an earlier stream left. `inputRate` in Hz, see RateConverter::Start. False when the
    /// bit rate, the channels or the input rate cannot be encoded, which is the caller's to report,
    /// or when memory is short (reported as "Unable to allocate %s\n").
    [[nodiscard]] bool Mp2EncoderInit(BlockOutput output, bool stereo,
                                      std::uint32_t inputRate = 44100, FrameWatch frames = {});

    /// Sets the rate in Hz of what is fed from now on, for clips of different rates in one stream:
    /// the conversion starts afresh with the samples that are held. The same rate changes nothing.
    /// False, and nothing changes, for a rate that RateConverter::Start refuses.
    [[nodiscard]] bool SetInputRate(std::uint32_t inputRate) {
        return inputRate == converter_.InputRate() || converter_.Start(inputRate);
    }

    /// Feeds 16-bit samples, interleaved when stereo; any number of bytes, what is no whole sample
    /// waits for the next call. Does nothing while not active.
    void Mp2EncodeSamples(ByteSpan pcm);

    /// Encodes what is left, zero-padded to a frame, releases the encoder and hands out the rest of
    /// the output block. A second padded frame follows only when the first left real samples over.
    /// Does nothing while not active.
    void Mp2EncodeFlush();

    /// True between Mp2EncoderInit and Mp2EncodeFlush.
    [[nodiscard]] bool IsActive() const { return encoder_ != nullptr; }

    /// Frames encoded since Mp2EncoderInit.
    [[nodiscard]] std::uint32_t Frames() const { return frames_; }

  private:
    [[nodiscard]] unsigned Channels() const { return stereo_ ? 2 : 1; }
    [[nodiscard]] std::span<std::uint8_t> AssemblerBytes();
    void EncodeAssembled();
    void PutFrame(ByteSpan frame);

    const AudioState& audio_;
    ErrorReporter& report_;
    RateConverter converter_;
    std::unique_ptr<Layer2Encoder> encoder_;
    BlockOutput output_;
    FrameWatch watch_;
    bool stereo_ = false;
    std::uint32_t frames_ = 0;
    std::array<std::int16_t, 2 * kMp2FrameSamples> assembler_{};
    std::size_t heldBytes_ = 0;
    std::array<std::int16_t, kMp2FrameSamples> left_{};
    std::array<std::int16_t, kMp2FrameSamples> right_{};
    std::array<std::uint8_t, kBlockBytes> block_{};
    std::size_t fill_ = 0;
};

}  // namespace orma
