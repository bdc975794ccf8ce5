#include "audio/files/mp2_pipeline.h"

#include <algorithm>
#include <utility>

#include "audio/files/layer2_encoder.h"

namespace orma {

Mp2Pipeline::Mp2Pipeline(const AudioState& audio, ErrorReporter& report)
    : audio_(audio), report_(report) {}

Mp2Pipeline::~Mp2Pipeline() = default;

bool Mp2Pipeline::Mp2EncoderInit(BlockOutput output, bool stereo, std::uint32_t inputRate,
                                 FrameWatch frames) {
    encoder_.reset();
    heldBytes_ = 0;
    fill_ = 0;
    frames_ = 0;
    stereo_ = stereo;
    output_ = std::move(output);
    watch_ = std::move(frames);
    if (!audio_.bitrate.IsLegalFor(stereo) || !converter_.Start(inputRate)) return false;
    encoder_ = Layer2Encoder::Create(audio_.bitrate.BitsPerSecond(), stereo);
    if (encoder_ == nullptr) report_.ShowError(FormatText("Unable to allocate %s\n", "encoder"));
    return encoder_ != nullptr;
}

void Mp2Pipeline::Mp2EncodeSamples(ByteSpan pcm) {
    if (!IsActive()) return;
    const std::span<std::uint8_t> assembler = AssemblerBytes();
    while (!pcm.empty()) {
        const std::size_t taken = std::min(pcm.size(), assembler.size() - heldBytes_);
        std::copy_n(pcm.data(), taken, assembler.data() + heldBytes_);
        heldBytes_ += taken;
        pcm = pcm.subspan(taken);
        if (heldBytes_ == assembler.size()) EncodeAssembled();
    }
}

void Mp2Pipeline::Mp2EncodeFlush() {
    if (!IsActive()) return;
    const std::span<std::uint8_t> assembler = AssemblerBytes();
    while (heldBytes_ > 0) {
        // Padding that a frame leaves over is no sound: only the bytes that were fed count as held.
        const std::size_t padding = assembler.size() - heldBytes_;
        std::ranges::fill(assembler.last(padding), std::uint8_t{0});
        EncodeAssembled();
        heldBytes_ -= std::min(heldBytes_, padding);
    }
    encoder_.reset();
    if (fill_ > 0) output_(ByteSpan(block_).first(fill_));
    fill_ = 0;
}

std::span<std::uint8_t> Mp2Pipeline::AssemblerBytes() {
    return {reinterpret_cast<std::uint8_t*>(assembler_.data()),
            kMp2FrameSamples * Channels() * sizeof(std::int16_t)};
}

/// Encodes one frame from the full assembler and keeps what the conversion did not consume.
void Mp2Pipeline::EncodeAssembled() {
    const std::span<std::uint8_t> assembler = AssemblerBytes();
    const std::span<const std::int16_t> samples(assembler_.data(), kMp2FrameSamples * Channels());
    const std::size_t consumed = converter_.Convert(samples, Channels(), left_, right_);
    const std::size_t consumedBytes = consumed * Channels() * sizeof(std::int16_t);
    std::ranges::copy(assembler.subspan(consumedBytes), assembler.begin());
    heldBytes_ = assembler.size() - consumedBytes;
    const ByteSpan frame = encoder_->EncodeFrame(left_.data(), right_.data());
    frames_ += frame.empty() ? 0 : 1;
    PutFrame(frame);
}

/// Adds a frame to the output block. A frame that reaches the block's end hands it out and leaves
/// its rest as the beginning of the next.
void Mp2Pipeline::PutFrame(ByteSpan frame) {
    if (watch_) watch_(frame);
    const std::size_t first = std::min(frame.size(), kBlockBytes - fill_);
    std::ranges::copy(frame.first(first), block_.begin() + static_cast<std::ptrdiff_t>(fill_));
    fill_ += first;
    if (fill_ < kBlockBytes) return;
    output_(block_);
    const ByteSpan rest = frame.subspan(first);
    std::ranges::copy(rest, block_.begin());
    fill_ = rest.size();
}

}  // namespace orma
