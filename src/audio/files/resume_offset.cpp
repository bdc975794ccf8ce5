#include "audio/files/resume_offset.h"

namespace orma {

std::uint64_t HeldBytes(const UploadTraces& traces, std::uint64_t size) {
    return traces.older && size != *traces.older && size <= traces.handed ? size : 0;
}

ResumeOffset DecideResumeOffset(const UploadTraces& traces, std::optional<std::uint64_t> size,
                                std::uint64_t sent) {
    if (sent == 0) return {};
    if (size) return {.held = HeldBytes(traces, *size)};
    if (traces.older) return {};
    return {.held = sent, .blind = true};
}

}  // namespace orma
