#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "audio/engine/equalizer_filter.h"
#include "base/equalizer_set.h"
#include "platform/headset_probe.h"
#include "platform/wave.h"

namespace orma {

/// What input processing takes from the settings, as plain values.
struct InputProcessingSettings {
    std::array<EqualizerSet, 5> sets;
    Text currentSetName;
    EqualizerSet initial;           // the bands before a set is chosen
    std::int32_t inputGainDb = 0;   // 0..40
    std::uint32_t outputStep = 20;  // 0..20, meaning step - 20 dB
    bool volumeControl = true;      // the output volume control acts
    bool alternativeHeadsetKey = false;
};

/// Processes each captured buffer in place before it is measured and saved: a DC blocker, an
/// optional three-band equaliser, the input gain, hard clipping to +-32767. Also owns the input
/// gain and the output volume. 16-bit sound only; S/PDIF input passes it by. UI thread.
class InputProcessing {
  public:
    /// `waves` takes the output volume; both outlive this object.
    InputProcessing(WaveSystem& waves, HeadsetProbe& headset);

    /// Takes the settings over, selects the set of the current name (none of that name: equaliser
    /// off) and computes all bands. `sampleRate` in Hz.
    void Load(const InputProcessingSettings& settings, std::uint32_t sampleRate);

    /// The rate that the bands are computed for, Hz; recomputes them.
    void SetSampleRate(std::uint32_t sampleRate);

    /// Changes the input gain by `delta` dB, clamped to 0..40.
    void SetInputGain(std::int32_t delta);

    /// Changes the output volume by `delta` steps, clamped to 0..20; the step is kept only when the
    /// device took it. Does nothing while the control is switched off.
    void SetOutputVolume(std::int32_t delta);

    /// Copies set 0..4 into the active equaliser; ComputeBand must follow for all bands.
    void SelectEqualizerSet(std::size_t index);

    /// Selects the set of that name and computes it; false (nothing changes) when there is none.
    [[nodiscard]] bool SelectByName(const Text& name);

    /// No set is in use from now on.
    void SwitchEqualizerOff();

    /// Recomputes the gain factor and, while the equaliser is on, the coefficients of band 0..2,
    /// see DesignBell. A band that is switched off, or that no filter can realise, passes the sound
    /// through.
    void ComputeBand(std::size_t band);

    /// For a set named "..._ext" or "..._int": changes to its twin by whether a headset is present.
    void ChooseEqualizerForHeadset();

    /// 0 without a headset, another value with one, -1 when unknown.
    [[nodiscard]] int GetHeadsetState();

    /// Clears the filter state and the DC accumulators, before a recording starts.
    void ClearState();

    /// Processes one buffer of interleaved samples in place.
    void ProcessInputBuffer(std::span<std::int16_t> samples, unsigned channels);

    [[nodiscard]] std::int32_t InputGainDb() const { return gainDb_; }
    [[nodiscard]] std::int32_t GainFactor() const { return factor_; }  // 256 = unity
    [[nodiscard]] std::uint32_t OutputStep() const { return outputStep_; }
    [[nodiscard]] bool EqualizerOn() const { return active_.on != 0; }
    [[nodiscard]] const Text& CurrentSetName() const { return currentSetName_; }

    /// Coefficients of a band, scaled by 2^28: b2, -a1, -a2, b1, b0.
    [[nodiscard]] const BandCoefficients& Coefficients(std::size_t band) const {
        return coefficients_[band];
    }

  private:
    void ComputeGainFactor();
    void ComputeAllBands();
    [[nodiscard]] std::int32_t Equalize(std::int32_t value);

    struct StageState {
        std::int32_t w1 = 0;
        std::int32_t w2 = 0;
    };

    WaveSystem& waves_;
    HeadsetProbe& headset_;
    std::array<EqualizerSet, 5> sets_;
    EqualizerSet active_;
    Text currentSetName_;
    std::uint32_t sampleRate_ = 44100;
    std::int32_t gainDb_ = 0;
    std::int32_t factor_ = 256;
    std::uint32_t outputStep_ = 20;
    bool volumeControl_ = true;
    bool alternativeHeadsetKey_ = false;
    std::array<BandCoefficients, 3> coefficients_{};
    std::array<StageState, 3> stages_{};
    std::array<std::int32_t, 2> dc_{};
};

}  // namespace orma
