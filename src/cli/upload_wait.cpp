#include "cli/upload_wait.h"

#include <cstdio>

namespace orma::cli {
namespace {

constexpr std::uint32_t kLookEveryMs = 100;

}  // namespace

void UploadWait::Run() {
    if (uploads_.UnderWay() == 0) return;
    waiting_ = true;
    std::fprintf(stderr,
                 "orma: the take is kept; its upload is not finished (Ctrl-C gives it up)%s",
                 showLine_ ? "" : "\n");
    const auto timer = loop_.StartTimer(kLookEveryMs, [this] {
        if (uploads_.UnderWay() == 0) loop_.Quit(0);
        if (showLine_ && uploads_.UnderWay() != 0) ShowLine();
    });
    loop_.Run();
    if (showLine_) std::fputs("\n", stderr);
    waiting_ = false;
}

void UploadWait::ShowLine() {
    constexpr std::uint64_t kKilobyte = 1024;
    const std::uint64_t kilobytes = (uploads_.BytesWaiting() + kKilobyte - 1) / kKilobyte;
    if (kilobytes > 0)
        std::fprintf(stderr, "\rorma: uploading, %llu KB to go (Ctrl-C gives it up)\x1b[K",
                     static_cast<unsigned long long>(kilobytes));
    else
        std::fputs("\rorma: uploaded, the server is asked (Ctrl-C gives it up)\x1b[K", stderr);
    std::fflush(stderr);
}

}  // namespace orma::cli
