#include "platform/curl/ftp_sockets.h"

#include <algorithm>
#include <array>

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#ifdef __linux__
#include <linux/sockios.h>
#endif

namespace orma {
namespace {

// What the system takes ahead of the network is lost with the connection. With its usual buffers
// that are megabytes; this is still enough for a fast line.
constexpr int kDataBufferBytes = 256 * 1024;

// How long a server gets for the reply that explains a broken data connection.
constexpr int kLeftOverSteps = 10;
constexpr int kLeftOverStepMs = 40;

void LimitBuffer(int socket) {
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kDataBufferBytes, sizeof(kDataBufferBytes));
}

}  // namespace

int FtpSockets::Open(int family, int type, int protocol) {
    const int socket = ::socket(family, type | SOCK_CLOEXEC, protocol);
    if (socket < 0) return -1;
    {
        const std::scoped_lock lock(mutex_);
        open_.push_back(socket);
    }
    if (HasControl()) {
        data_ = socket;
        LimitBuffer(socket);
    }
    return socket;
}

void FtpSockets::Accepted(int socket) {
    data_ = socket;
    LimitBuffer(socket);
}

void FtpSockets::Close(int socket) {
    if (socket == control_) control_ = -1;
    if (socket == data_) data_ = -1;
    const std::scoped_lock lock(mutex_);
    std::erase(open_, socket);
    ::close(socket);
}

void FtpSockets::ShutDownAll() {
    const std::scoped_lock lock(mutex_);
    for (const int socket : open_)
        shutdown(socket, SHUT_RDWR);
}

void FtpSockets::FoundControl() {
    if (!HasControl() && !open_.empty()) control_ = open_.back();
}

bool FtpSockets::WaitForControl(int milliseconds) const {
    pollfd entry{control_, POLLIN, 0};
    return HasControl() && poll(&entry, 1, milliseconds) > 0;
}

void FtpSockets::ReadLeftOver(FtpReply& reply) const {
    std::array<char, 1024> bytes{};
    for (int step = 0; step < kLeftOverSteps && !reply.Final(); ++step) {
        if (!WaitForControl(kLeftOverStepMs)) continue;
        const ssize_t got = recv(control_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (got <= 0) return;
        reply.Take({bytes.data(), static_cast<std::size_t>(got)});
    }
}

void FtpSockets::KillControl() {
    if (!HasControl()) return;
    std::array<char, 1024> bytes{};
    shutdown(control_, SHUT_RDWR);
    for (int step = 0; step < 1024; ++step) {
        if (recv(control_, bytes.data(), bytes.size(), MSG_DONTWAIT) <= 0) return;
    }
}

void FtpSockets::EndData() {
    if (data_ >= 0) shutdown(data_, SHUT_WR);
}

void FtpSockets::ResetData() {
    constexpr linger kAtOnce{1, 0};
    if (data_ >= 0) setsockopt(data_, SOL_SOCKET, SO_LINGER, &kAtOnce, sizeof(kAtOnce));
}

std::uint64_t FtpSockets::DataUnderWay() const {
#ifdef SIOCOUTQ
    int bytes = 0;
    if (data_ >= 0 && ioctl(data_, SIOCOUTQ, &bytes) == 0) return static_cast<std::uint64_t>(bytes);
#endif
    return 0;
}

}  // namespace orma
