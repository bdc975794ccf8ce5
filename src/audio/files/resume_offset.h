#pragma once

#include <cstdint>
#include <optional>

namespace orma {

/// What is known of an upload that may break off.
struct UploadTraces {
    std::uint64_t handed = 0;            // bytes up to the farthest write, completed or not
    std::optional<std::uint64_t> older;  // size of what stood under the name before, where told
};

/// Where a broken upload goes on, in bytes of the file.
struct ResumeOffset {
    std::uint64_t held = 0;  // the first bytes, which the server has; 0: send all anew
    bool blind = false;      // the server could not tell: its file must not count as verified
};

/// How many of the upload's first bytes a remote file of `size` bytes holds. A size that was there
/// before is the earlier publication's: some servers show a new file only when it is whole, others
/// drop what broke off. One that nobody has asked for before, or beyond what was sent, means
/// nothing: 0.
[[nodiscard]] std::uint64_t HeldBytes(const UploadTraces& traces, std::uint64_t size);

/// Decides from the remote file's size, or from `sent`, the bytes that were sent, where the server
/// cannot tell sizes and never could. 0 when nothing was sent.
[[nodiscard]] ResumeOffset DecideResumeOffset(const UploadTraces& traces,
                                              std::optional<std::uint64_t> size,
                                              std::uint64_t sent);

}  // namespace orma
