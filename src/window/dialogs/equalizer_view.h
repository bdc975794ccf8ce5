#pragma once

#include <QWidget>

#include "base/equalizer_set.h"

namespace orma {

/// A small display with what a set of the equaliser does to the sound: dB, its gain offset
/// included, over the frequency in even octaves from 20 Hz to half the sample rate or 20 kHz. The
/// curve is computed from the coefficients that the sound runs through.
class EqualizerView : public QWidget {
  public:
    /// `sampleRate` in Hz.
    explicit EqualizerView(std::uint32_t sampleRate);

    /// A set that is off, or none, is a straight line at 0 dB.
    void Show(const EqualizerSet& set);

    [[nodiscard]] QSize sizeHint() const override { return {380, 180}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {200, 110}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] double DbAt(double frequency) const;
    [[nodiscard]] int Range() const;

    std::uint32_t sampleRate_;
    EqualizerSet set_;
};

}  // namespace orma
