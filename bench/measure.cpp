#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>

#include <sys/resource.h>

namespace orma::bench {
namespace {

double CpuSeconds() {
    timespec own{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &own);
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return static_cast<double>(own.tv_sec) + static_cast<double>(own.tv_nsec) / 1e9 +
           seconds(children.ru_utime) + seconds(children.ru_stime);
}

Cost CostOf(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    const double cpu = CpuSeconds();
    run();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {CpuSeconds() - cpu, wall.count()};
}

double Median(std::vector<Cost>& costs, double Cost::*part) {
    std::ranges::sort(costs, {}, part);
    const std::size_t middle = costs.size() / 2;
    if (costs.size() % 2 == 1) return costs[middle].*part;
    return (costs[middle - 1].*part + costs[middle].*part) / 2;
}

}  // namespace

std::vector<Cost> MedianCosts(const std::vector<Contender>& contenders, unsigned rounds) {
    for (const Contender& contender : contenders)
        contender.run();
    std::vector<std::vector<Cost>> all(contenders.size());
    for (unsigned round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i)
            all[i].push_back(CostOf(contenders[i].run));
    }
    std::vector<Cost> medians;
    medians.reserve(all.size());
    for (std::vector<Cost>& costs : all)
        medians.push_back({Median(costs, &Cost::cpu), Median(costs, &Cost::wall)});
    return medians;
}

void Compare(const std::string& topic, const std::vector<Contender>& contenders, unsigned rounds) {
    const std::vector<Cost> costs = MedianCosts(contenders, rounds);
    for (std::size_t i = 0; i < contenders.size(); ++i)
        std::printf("%s.%s %.6f %.6f\n", topic.c_str(), contenders[i].name.c_str(), costs[i].cpu,
                    costs[i].wall);
    std::fflush(stdout);
}

void Require(bool good, const std::string& what) {
    if (good) return;
    std::fprintf(stderr, "bench: %s\n", what.c_str());
    std::exit(1);
}

void Shell(const std::string& command) {
    Require(std::system(command.c_str()) == 0, "failed: " + command);
}

Bytes ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    Require(file.good(), "cannot read " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::int16_t> WavSamples(const std::string& path) {
    constexpr std::size_t kHeaderBytes = 44;
    const Bytes bytes = ReadAll(path);
    Require(bytes.size() > kHeaderBytes && IsTag(&bytes[36], "data"), path + " has another header");
    std::vector<std::int16_t> samples((bytes.size() - kHeaderBytes) / sizeof(std::int16_t));
    std::memcpy(samples.data(), &bytes[kHeaderBytes], samples.size() * sizeof(std::int16_t));
    return samples;
}

BoxAnswer Desk::FatalBoxes::Show(const MessageBox& box) {
    Require(false, ToUtf8(box.text));
    return BoxAnswer::kOk;
}

Desk::Desk(bool stereo) {
    constexpr std::uint32_t k64 = 3;
    constexpr std::uint32_t k128 = 7;
    audio.stereo = stereo;
    audio.bitrate.SetMp2Bitrate(stereo ? k128 : k64, report_);
}

}  // namespace orma::bench
