#include "platform/posix/posix_system_status.h"

#include <fstream>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace orma::test {
namespace {

class PosixSystemStatusTest : public testing::Test {
  protected:
    void Put(const std::string& file, const std::string& content) {
        const auto path = root / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }

    void PutSupply(const std::string& name, const std::string& type, const std::string& capacity,
                   const std::string& full, const std::string& scope = "") {
        const std::string supply = "sys/class/power_supply/" + name + "/";
        Put(supply + "type", type + "\n");
        if (!capacity.empty()) Put(supply + "capacity", capacity + "\n");
        if (!full.empty()) Put(supply + "energy_full", full + "\n");
        if (!scope.empty()) Put(supply + "scope", scope + "\n");
    }

    TempFolder folder;
    std::filesystem::path root = folder.Native();
};

TEST_F(PosixSystemStatusTest, TwoBatteriesCountBySizeAndThoseOfOtherDevicesNot) {
    PosixSystemStatus status(root);
    PutSupply("AC", "Mains", "", "");
    PutSupply("hidpp_battery_0", "Battery", "5", "", "Device");
    EXPECT_EQ(status.BatteryPercent(), std::nullopt);
    PutSupply("BAT0", "Battery", "100", "30000");
    PutSupply("BAT1", "Battery", "20", "10000");
    EXPECT_EQ(status.BatteryPercent(), 80);
}

TEST_F(PosixSystemStatusTest, FreeMemoryIsWhatProgramsCanTake) {
    Put("proc/meminfo", "MemTotal:  4000 kB\nMemFree:  10 kB\nMemAvailable:  5000000 kB\n");
    EXPECT_EQ(PosixSystemStatus(root).FreeMemory(), 5'120'000'000U);
}

TEST_F(PosixSystemStatusTest, TheLoadIsOfTheTimeSinceItWasAskedLast) {
    Put("proc/stat", "cpu  900 0 100 0 0 0 0 0 0 0\ncpu0 1 2 3\n");
    PosixSystemStatus status(root);
    Put("proc/stat", "cpu  910 5 105 50 25 1 2 2 0 0\n");  // 25 of 100
    EXPECT_EQ(status.ProcessorLoad(), 25);
    EXPECT_EQ(status.ProcessorLoad(), 25);                 // no tick has passed
    Put("proc/stat", "cpu  910 5 105 50 20 1 2 2 0 0\n");  // waiting fell
    EXPECT_EQ(status.ProcessorLoad(), 25);
    Put("proc/stat", "cpu  1010 5 105 50 25 1 2 2 0 0\n");
    EXPECT_EQ(status.ProcessorLoad(), 100);
}

}  // namespace
}  // namespace orma::test
