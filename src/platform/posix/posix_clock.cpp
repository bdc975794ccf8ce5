#include "platform/posix/posix_clock.h"

#include <ctime>
#include <thread>

namespace orma {

std::uint32_t PosixClock::Ticks() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void PosixClock::Sleep(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

FileTime PosixClock::Now() {
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

DateTime PosixClock::ToLocal(FileTime moment) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
    const std::time_t time = seconds.time_since_epoch().count();
    std::tm local{};
    localtime_r(&time, &local);
    const auto field = [](int value) { return static_cast<std::uint16_t>(value); };
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(moment - seconds);
    return {field(local.tm_year + 1900), field(local.tm_mon + 1),
            field(local.tm_wday),        field(local.tm_mday),
            field(local.tm_hour),        field(local.tm_min),
            field(local.tm_sec),         field(static_cast<int>(rest.count()))};
}

}  // namespace orma
