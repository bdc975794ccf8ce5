#include "platform/posix/posix_system_status.h"

#include <fstream>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace orma::test {
namespace {

struct PosixSystemStatusTest : testing::Test {
    void Put(const std::string& file, const std::string& content) {
        const auto path = folder.Native() / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }
    void PutBattery(const std::string& name, const std::string& capacity, const std::string& full,
                    const std::string& scope = "System") {
        const std::string supply = "sys/class/power_supply/" + name;
        Put(supply + "/type", "Battery\n");
        Put(supply + "/capacity", capacity + "\n");
        Put(supply + "/energy_full", full + "\n");
        Put(supply + "/scope", scope + "\n");
    }

    TempFolder folder;
};

TEST_F(PosixSystemStatusTest, TwoBatteriesCountBySizeAndThoseOfOtherDevicesNot) {
    PosixSystemStatus status(folder.Native());
    Put("sys/class/power_supply/AC/type", "Mains\n");
    PutBattery("hidpp_battery_0", "5", "", "Device");
    EXPECT_EQ(status.BatteryPercent(), std::nullopt);
    PutBattery("BAT0", "100", "30000");
    PutBattery("BAT1", "20", "10000");
    EXPECT_EQ(status.BatteryPercent(), 80);
}

TEST_F(PosixSystemStatusTest, FreeMemoryIsWhatProgramsCanTake) {
    Put("proc/meminfo", "MemTotal:  4000 kB\nMemFree:  10 kB\nMemAvailable:  5000000 kB\n");
    EXPECT_EQ(PosixSystemStatus(folder.Native()).FreeMemory(), 5'120'000'000U);
}

TEST_F(PosixSystemStatusTest, TheLoadIsOfTheTimeSinceItWasAskedLast) {
    Put("proc/stat", "cpu  900 0 100 0 0 0 0 0 0 0\ncpu0 1 2 3\n");
    PosixSystemStatus status(folder.Native());
    const std::pair<const char*, int> loads[] = {
        {"910 5 105 50 25 1 2 2 0 0", 25},  // 25 of 100
        {"910 5 105 50 25 1 2 2 0 0", 25},  // no tick has passed
        {"910 5 105 50 20 1 2 2 0 0", 25},  // waiting fell
        {"1010 5 105 50 25 1 2 2 0 0", 100}};
    for (const auto& [ticks, load] : loads) {
        Put("proc/stat", std::string("cpu  ") + ticks + "\n");
        EXPECT_EQ(status.ProcessorLoad(), load) << ticks;
    }
}

}  // namespace
}  // namespace orma::test
