// What users write by hand on the command line: virtual audio, positions, values of settings.

#include "cli/position.h"
#include "fuzz/fuzz.h"
#include "platform/virtual_audio/virtual_audio_options.h"
#include "settings/settings_table.h"

namespace orma::test {

// The table of settings; a few copies of the text.
const MemoryBudget kMemoryBudget{.fixedBytes = 128 * 1024, .bytesPerInputByte = 32};

void TryInput(ByteSpan bytes) {
    const std::string text(bytes.begin(), bytes.end());
    std::string error;
    const auto options = ParseVirtualAudio(text, error);
    Require(options.has_value() == error.empty(), "either options or a reason");
    if (options)
        Require(options->inputFile != options->outputFile, "it never plays into what it reads");

    for (const std::uint32_t rate : {5U, 10U, 20U}) {
        const auto position = cli::ParsePosition(text, rate);
        if (!position) continue;
        const auto again = cli::ParsePosition(cli::PositionText(*position, rate), rate);
        Require(again == position, "a position survives its text");
    }

    static SettingsRecord record;  // every value is put back
    static const SettingsTable table(record);
    for (const Setting& setting : table.In(SettingsFile::kUserState)) {
        const std::string before = setting.Get();
        const bool taken = setting.Set(text).empty();
        const std::string after = setting.Get();
        Require(taken || after == before, "a refused value changes nothing");
        Require(!taken || setting.IsText() || std::stoll(after) == std::stoll(text),
                "a number is taken as it is");
        (void)setting.Set(before);
    }
}

}  // namespace orma::test
