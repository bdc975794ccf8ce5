#include "platform/posix/posix_system_status.h"

#include <fstream>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace orma::test {
namespace {

TEST(PosixSystemStatus, TwoBatteriesCountBySizeAndThoseOfOtherDevicesNot) {
    const TempFolder folder;
    const auto put = [&](const char* name, const char* type, const char* scope, int percent,
                         int full) {
        const auto supply = folder.Native() / "sys/class/power_supply" / name;
        std::filesystem::create_directories(supply);
        std::ofstream(supply / "type") << type << '\n';
        std::ofstream(supply / "scope") << scope << '\n';
        std::ofstream(supply / "capacity") << percent << '\n';
        std::ofstream(supply / "energy_full") << full << '\n';
    };
    PosixSystemStatus status(folder.Native());
    put("AC", "Mains", "System", 50, 1000);
    put("hidpp_battery_0", "Battery", "Device", 5, 1000);
    EXPECT_EQ(status.BatteryPercent(), std::nullopt);
    put("BAT0", "Battery", "System", 100, 30000);
    put("BAT1", "Battery", "System", 20, 10000);
    EXPECT_EQ(status.BatteryPercent(), 80);
}

}  // namespace
}  // namespace orma::test
