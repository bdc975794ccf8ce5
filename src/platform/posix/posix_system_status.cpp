#include "platform/posix/posix_system_status.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <string>
#include <system_error>

namespace orma {
namespace {

namespace fs = std::filesystem;

std::string WordIn(const fs::path& file) {
    std::ifstream stream(file);
    std::string word;
    stream >> word;
    return word;
}

std::optional<double> NumberIn(const fs::path& file) {
    std::ifstream stream(file);
    double number = 0;
    if (stream >> number) return number;
    return std::nullopt;
}

bool FeedsMachine(const fs::path& supply) {
    return WordIn(supply / "type") == "Battery" && WordIn(supply / "scope") != "Device";
}

/// What a full battery holds, in a unit that the batteries of one machine share.
double SizeOf(const fs::path& supply) {
    for (const char* file : {"energy_full", "charge_full"})
        if (const auto size = NumberIn(supply / file); size && *size > 0) return *size;
    return 1;
}

}  // namespace

PosixSystemStatus::PosixSystemStatus(fs::path root)
    : root_(std::move(root)), before_(ReadTimes()) {}

std::optional<int> PosixSystemStatus::BatteryPercent() {
    double charge = 0;
    double size = 0;
    std::error_code error;
    fs::directory_iterator supply(root_ / "sys/class/power_supply", error);
    for (; !error && supply != fs::directory_iterator(); supply.increment(error)) {
        if (!FeedsMachine(supply->path())) continue;
        const auto percent = NumberIn(supply->path() / "capacity");
        if (!percent) continue;
        const double weight = SizeOf(supply->path());
        charge += std::clamp(*percent, 0.0, 100.0) * weight;
        size += weight;
    }
    if (size <= 0) return std::nullopt;
    return static_cast<int>(std::lround(charge / size));
}

std::optional<std::uint64_t> PosixSystemStatus::FreeMemory() {
    std::ifstream stream(root_ / "proc/meminfo");
    std::string name;
    std::string rest;
    while (stream >> name) {
        std::uint64_t kilobytes = 0;
        if (name == "MemAvailable:" && stream >> kilobytes) return kilobytes * 1024;
        std::getline(stream, rest);
    }
    return std::nullopt;
}

// proc(5): user, nice, system, idle, iowait, irq, softirq, steal; guests are within user and nice.
std::optional<PosixSystemStatus::Times> PosixSystemStatus::ReadTimes() const {
    constexpr std::size_t kIdle = 3;
    constexpr std::size_t kWaiting = 4;
    std::ifstream stream(root_ / "proc/stat");
    std::string name;
    std::array<std::uint64_t, 8> ticks{};
    if (!(stream >> name) || name != "cpu") return std::nullopt;
    Times times;
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        if (!(stream >> ticks[i])) return std::nullopt;
        times.all += ticks[i];
        if (i != kIdle && i != kWaiting) times.busy += ticks[i];
    }
    return times;
}

std::optional<int> PosixSystemStatus::ProcessorLoad() {
    const auto now = ReadTimes();
    if (!now || !before_) {
        before_ = now;
        return std::nullopt;
    }
    const std::uint64_t all = now->all - before_->all;
    // The count of waiting for a device may fall, so that neither sum is certain to rise.
    if (now->all <= before_->all || now->busy < before_->busy) return load_;
    const std::uint64_t busy = std::min(now->busy - before_->busy, all);
    load_ = static_cast<int>((busy * 100 + all / 2) / all);
    before_ = now;
    return load_;
}

}  // namespace orma
