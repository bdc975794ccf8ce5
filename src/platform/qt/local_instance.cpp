#include "platform/qt/local_instance.h"

#include <QSocketNotifier>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "base/trace.h"

namespace orma {
namespace {

using std::chrono::steady_clock;

constexpr std::string_view kRaise = "raise\n";
constexpr std::string_view kClose = "close\n";
constexpr const char* kSocketSuffix = ".socket";
constexpr const char* kLockSuffix = ".lock";
constexpr auto kLookAgain = std::chrono::milliseconds(20);

/// FNV-1a of 64 bits, in hexadecimal: a short name for a path of any length.
std::string ShortName(const std::string& path) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : path)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return Format("%016llx", static_cast<unsigned long long>(hash));
}

/// A folder that is the user's alone: others can neither listen there nor pretend.
bool IsPrivate(const std::string& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & 077) == 0;
}

/// With a separator at its end; empty when there is none.
std::string RuntimeFolder() {
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR");
        runtime != nullptr && runtime[0] == '/' && IsPrivate(runtime))
        return std::string(runtime) + "/";
    std::error_code error;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    if (error) return {};
    const std::string own = temporary / Format("orma-edit-%u", ::geteuid());
    ::mkdir(own.c_str(), 0700);
    return IsPrivate(own) ? own + "/" : std::string();
}

/// None when the path is longer than a socket's may be.
std::optional<sockaddr_un> AddressOf(const std::string& path) {
    sockaddr_un address{};
    if (path.size() >= sizeof address.sun_path) return std::nullopt;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

int NewSocket() {
    return ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

/// Nobody there: nothing happens.
void Send(const std::string& name, std::string_view line) {
    const auto address = AddressOf(name + kSocketSuffix);
    const int sender = NewSocket();
    if (address && sender >= 0 &&
        ::sendto(sender, line.data(), line.size(), 0, reinterpret_cast<const sockaddr*>(&*address),
                 sizeof *address) < 0)
        Trace("instance: nobody hears at %s: %s", name.c_str(), std::strerror(errno));
    if (sender >= 0) ::close(sender);
}

/// The locked file, or -1: another process holds it, or it cannot be made.
int TakeLock(const std::string& name, bool& held) {
    held = false;
    const int lock = ::open((name + kLockSuffix).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0 || ::flock(lock, LOCK_EX | LOCK_NB) == 0) return lock;
    held = errno == EWOULDBLOCK;
    ::close(lock);
    return -1;
}

}  // namespace

LocalInstance::LocalInstance(const Text& programFolder, Program program) {
    const std::string folder = RuntimeFolder();
    if (folder.empty()) {
        Trace("instance: no runtime folder, others are not seen");
        return;
    }
    std::error_code error;
    const auto canonical = std::filesystem::weakly_canonical(ToUtf8(programFolder), error);
    const std::string home = ShortName(error ? ToUtf8(programFolder) : canonical.string());
    setup_ = folder + "orma-edit-setup-" + home;
    name_ = program == Program::kSetup ? setup_ : folder + "orma-edit-" + home;
}

LocalInstance::~LocalInstance() {
    Leave();
}

void LocalInstance::Leave() {
    notifier_.reset();
    if (socket_ >= 0) {
        ::unlink((name_ + kSocketSuffix).c_str());
        ::close(std::exchange(socket_, -1));
    }
    if (lock_ >= 0) ::close(std::exchange(lock_, -1));  // last: from now on there is none
}

bool LocalInstance::IsOpen() {
    if (name_.empty() || lock_ >= 0) return lock_ >= 0;
    bool held = false;
    if (const int lock = TakeLock(name_, held); lock >= 0) ::close(lock);
    return held;
}

void LocalInstance::Raise() {
    if (!name_.empty()) Send(name_, kRaise);
}

bool LocalInstance::Close(int patienceMs) {
    if (name_.empty()) return true;
    Send(name_, kClose);
    const auto end = steady_clock::now() + std::chrono::milliseconds(patienceMs);
    while (IsOpen()) {
        if (steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(kLookAgain);
    }
    return true;
}

void LocalInstance::CloseSetup() {
    if (!setup_.empty()) Send(setup_, kClose);
}

bool LocalInstance::Open(Requests requests) {
    if (name_.empty() || lock_ >= 0) return true;
    bool held = false;
    lock_ = TakeLock(name_, held);
    if (lock_ < 0) {
        Trace("instance: %s", held ? "another one was quicker" : "no lock: this one is not seen");
        return !held;
    }
    requests_ = std::move(requests);
    // Whoever left a socket behind no longer holds the lock.
    const std::string path = name_ + kSocketSuffix;
    ::unlink(path.c_str());
    const auto address = AddressOf(path);
    const int receiver = NewSocket();
    if (!address || receiver < 0 ||
        ::bind(receiver, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0) {
        Trace("instance: cannot hear others at %s", path.c_str());
        if (receiver >= 0) ::close(receiver);
        return true;
    }
    socket_ = receiver;
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { Receive(); });
    return true;
}

void LocalInstance::Receive() {
    std::array<char, 16> line{};
    const ssize_t got = ::recv(socket_, line.data(), line.size(), 0);
    if (got <= 0) return;
    const std::string_view request(line.data(), static_cast<std::size_t>(got));
    // A copy: the request may destroy this instance.
    const Requests requests = requests_;
    if (request == kRaise && requests.raise) requests.raise();
    if (request == kClose && requests.close) requests.close();
}

}  // namespace orma
