#include "publish/coding_history.h"

#include "base/text.h"

namespace orma {

std::string CodingHistory(const PublicationFormat& format) {
    const char* mode = format.channels == 2 ? "stereo" : "mono";
    const std::string recorded = Format("A=PCM,F=%u,W=16,M=%s\r\n", format.recordingRate, mode);
    const std::string coding = format.mp2
                                   ? Format("A=MPEG1L2,F=48000,B=%u,W=16", format.bitrate / 1000)
                                   : std::string("A=PCM,F=48000,W=16");
    return recorded + coding + Format(",M=%s,T=Orma by Calvera \r\n", mode);
}

}  // namespace orma
