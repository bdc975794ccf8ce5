#include "platform/wave.h"

namespace orma {

bool IsSupported(const WaveFormat& format) {
    return format.bitsPerSample == 16 && (format.channels == 1 || format.channels == 2) &&
           format.blockAlign == 2 * format.channels && format.samplesPerSecond >= 1000 &&
           format.samplesPerSecond <= 192000;
}

}  // namespace orma
