#include "platform/virtual_audio/virtual_audio_options.h"

#include <array>
#include <set>

#include "base/number.h"
#include "platform/option_text.h"

namespace orma {
namespace {

constexpr std::string_view kPrefix = "virtual:";
constexpr std::array<std::string_view, 5> kKeys{"in=", "out=", "pace=", "vanish=", "count="};

constexpr std::uint32_t kMostSpeed = 1000;

bool ParsePace(std::string_view value, VirtualAudioOptions& options) {
    options.pace = value == "fast" ? Pace::kFast : Pace::kReal;
    if (value == "fast" || value == "real") return true;
    options.speed = ParseNumber<std::uint32_t>(value).value_or(0);
    return options.speed >= 1 && options.speed <= kMostSpeed;
}

/// False when the value is none for its key.
bool ParsePart(const OptionPart& part, VirtualAudioOptions& options) {
    const auto [text, key, value] = part;
    if (key == "in=") options.inputFile = FromUtf8(value);
    if (key == "out=") options.outputFile = FromUtf8(value);
    if (key == "count=") options.countFile = FromUtf8(value);
    if (key == "pace=") return ParsePace(value, options);
    if (key != "vanish=") return !value.empty();
    options.vanishAfterFrames = ParseNumber<std::uint64_t>(value);
    return options.vanishAfterFrames.has_value();
}

}  // namespace

std::optional<VirtualAudioOptions> ParseVirtualAudio(std::string_view text, std::string& error) {
    const auto fail = [&](std::string why) {
        error = std::move(why);
        return std::nullopt;
    };
    if (!text.starts_with(kPrefix)) return fail("Virtual audio is written virtual:in=FILE,...");
    text.remove_prefix(kPrefix.size());

    VirtualAudioOptions options;
    std::set<std::string_view> seen;
    while (!text.empty()) {
        const OptionPart part = TakeOption(text, kKeys);
        if (part.key.empty())
            return fail("Unknown virtual audio option \"" + std::string(part.text) + "\".");
        if (!seen.insert(part.key).second)
            return fail("Virtual audio option \"" + std::string(part.key) + "\" is given twice.");
        if (!ParsePart(part, options))
            return fail("Virtual audio cannot take \"" + std::string(part.text) + "\".");
    }
    if (options.inputFile.empty() && options.outputFile.empty())
        return fail("Virtual audio needs in=FILE or out=FILE.");
    if (options.inputFile == options.outputFile)
        return fail("Virtual audio cannot play into the file that it reads.");
    return options;
}

}  // namespace orma
