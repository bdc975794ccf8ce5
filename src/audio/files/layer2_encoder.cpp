#include "audio/files/layer2_encoder.h"

#include <new>

#include <twolame.h>

#include "audio/files/buffer_period.h"

namespace orma {

std::unique_ptr<Layer2Encoder> Layer2Encoder::Create(std::uint32_t bitsPerSecond, bool stereo) {
    constexpr int kRate = 48000;
    twolame_options* options = twolame_init();
    if (options == nullptr) return nullptr;
    std::unique_ptr<Layer2Encoder> encoder(new (std::nothrow) Layer2Encoder(options));
    if (encoder == nullptr) {
        twolame_close(&options);
        return nullptr;
    }
    const int kbps = static_cast<int>(bitsPerSecond / 1000);
    const bool accepted =
        twolame_set_verbosity(options, 0) == 0 &&
        twolame_set_num_channels(options, stereo ? 2 : 1) == 0 &&
        twolame_set_mode(options, stereo ? TWOLAME_STEREO : TWOLAME_MONO) == 0 &&
        twolame_set_in_samplerate(options, kRate) == 0 &&
        twolame_set_out_samplerate(options, kRate) == 0 &&
        twolame_set_bitrate(options, kbps) == 0 && twolame_set_psymodel(options, 3) == 0 &&
        twolame_set_padding(options, TWOLAME_PAD_NO) == 0 &&
        twolame_set_error_protection(options, 0) == 0 &&
        twolame_set_energy_levels(options, 0) == 0 && twolame_init_params(options) == 0;
    return accepted ? std::move(encoder) : nullptr;
}

Layer2Encoder::~Layer2Encoder() {
    twolame_close(&options_);
}

ByteSpan Layer2Encoder::EncodeFrame(const std::int16_t* left, const std::int16_t* right) {
    const int bytes = twolame_encode_buffer(options_, left, right, kMp2FrameSamples, frame_.data(),
                                            static_cast<int>(frame_.size()));
    return bytes > 0 ? ByteSpan(frame_).first(static_cast<std::size_t>(bytes)) : ByteSpan();
}

}  // namespace orma
