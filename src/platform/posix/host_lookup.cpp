#include "platform/posix/host_lookup.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace orma {
namespace {

using End = NetworkResult::End;
using Answer = std::optional<Ipv4Address>;

constexpr std::chrono::milliseconds kSlice{50};  // between two questions to Patience

/// What asker and resolver share; whoever is last lets go of it.
struct Question {
    std::mutex mutex;
    std::condition_variable answered;
    bool isAnswered = false;
    Answer answer;
};

Answer AddressOf(const std::string& name) {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(name.c_str(), nullptr, &wanted, &found) != 0) return {};
    sockaddr_in first{};
    std::memcpy(&first, found->ai_addr, sizeof(first));
    ::freeaddrinfo(found);
    Ipv4Address address;
    std::memcpy(address.data(), &first.sin_addr, address.size());
    return address;
}

Answer IfNamed(const Ipv4Address& address) {
    sockaddr_in whose{};
    whose.sin_family = AF_INET;
    std::memcpy(&whose.sin_addr, address.data(), address.size());
    std::array<char, NI_MAXHOST> name{};
    const int failure =
        ::getnameinfo(reinterpret_cast<const sockaddr*>(&whose), sizeof(whose), name.data(),
                      static_cast<socklen_t>(name.size()), nullptr, 0, NI_NAMEREQD);
    return failure == 0 ? Answer(address) : Answer();
}

/// Has `resolve` run elsewhere, for nothing can interrupt it, and waits for it.
NetworkResult Ask(std::function<Answer()> resolve, Patience& patience, Answer& answer) {
    const auto question = std::make_shared<Question>();
    try {
        std::thread([question, resolve = std::move(resolve)] {
            const Answer found = resolve();
            const std::scoped_lock lock(question->mutex);
            question->answer = found;
            question->isAnswered = true;
            question->answered.notify_one();
        }).detach();
    } catch (const std::system_error& failure) {
        return {End::kFailed, static_cast<SystemError>(failure.code().value())};
    }
    while (true) {
        {
            std::unique_lock lock(question->mutex);
            question->answered.wait_for(lock, kSlice, [&] { return question->isAnswered; });
            if (question->isAnswered) {
                answer = question->answer;
                return {answer ? End::kDone : End::kFailed};
            }
        }
        if (!patience.GoOn()) return {End::kGivenUp};
    }
}

}  // namespace

NetworkResult LookUpName(const std::string& name, Patience& patience, Ipv4Address& address) {
    Answer answer;
    const NetworkResult result = Ask([name] { return AddressOf(name); }, patience, answer);
    if (result.Ok()) address = *answer;
    return result;
}

NetworkResult LookUpNameOf(const Ipv4Address& address, Patience& patience) {
    Answer answer;
    return Ask([address] { return IfNamed(address); }, patience, answer);
}

}  // namespace orma
