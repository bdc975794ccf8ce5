#include "audio/files/mp2_bitrate.h"

namespace orma {

void Mp2Bitrate::SetMp2Bitrate(std::uint32_t index, ErrorReporter& report) {
    if (index >= kBitsPerSecond.size()) {
        report.ShowError(u"Illegal bitrate");
        return;
    }
    index_ = index;
}

bool Mp2Bitrate::IsLegal(std::uint32_t index, bool stereo) {
    const std::uint32_t rate = kBitsPerSecond[index];
    if (!stereo) return rate <= 192000;
    return rate >= 64000 && rate != 80000;
}

}  // namespace orma
