// bench_levels FOLDER: the level file of a recording of ten hours with 100 cuts.

#include "audio/files/vu_file.h"
#include "measure.h"

int main(int count, char** words) {
    using namespace orma;
    using namespace orma::bench;
    Require(count == 2, "usage: bench_levels FOLDER");
    constexpr std::uint32_t kPeriods = 10 * 3600 * 20;
    constexpr std::uint32_t kCuts = 100;
    LevelSheet sheet;
    sheet.rangeEnd = kPeriods;
    sheet.levels.resize(kPeriods);
    for (std::uint32_t i = 0; i < kPeriods; ++i)
        sheet.levels[i] = static_cast<std::uint8_t>(i * 7 % 80);
    for (std::uint32_t i = 0; i < kCuts; ++i)
        sheet.cuts.push_back({i * 7200 + 100, i * 7200 + 1300, 0});

    Desk desk;
    const FileServices files = desk.Files();
    const Text path = FromUtf8(words[1]) + u"long.jvu";
    Compare("levels",
            {{"write", [&] { Require(WriteVuFile(files, path, sheet), "not written"); }},
             {"read", [&] { Require(ReadVuFile(files, path).has_value(), "not read"); }},
             {"cut",
              [&] {
                  Require(GetVuFileData(files, path, 0, 0).size() == kPeriods - kCuts * 1200,
                          "cut differently");
              }}},
            21);
}
