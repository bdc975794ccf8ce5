#pragma once

#include "audio/files/audio_state.h"

namespace orma {

/// Puts the audio state back as it was: validating recordings and choosing what a writer encodes
/// change it.
class AudioStateKeeper {
  public:
    explicit AudioStateKeeper(AudioState& audio) : audio_(audio), before_(audio) {}
    ~AudioStateKeeper() { audio_ = before_; }
    AudioStateKeeper(const AudioStateKeeper&) = delete;
    AudioStateKeeper& operator=(const AudioStateKeeper&) = delete;

  private:
    AudioState& audio_;
    AudioState before_;
};

}  // namespace orma
