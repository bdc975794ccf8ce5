#include "platform/virtual_audio/virtual_audio_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace orma {
namespace {

constexpr std::string_view kPrefix = "virtual:";
constexpr std::array<std::string_view, 5> kKeys{"in=", "out=", "pace=", "vanish=", "count="};

constexpr std::uint32_t kMostSpeed = 1000;

/// The key that `text` begins with, as an index into kKeys; their number when there is none.
std::size_t KeyOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::find_if(kKeys.begin(), kKeys.end(),
                     [&](std::string_view key) { return text.starts_with(key); }) -
        kKeys.begin());
}

/// The length of the part at the start of `text`: up to a comma that a key follows.
std::size_t PartLength(std::string_view text) {
    for (std::size_t comma = text.find(','); comma != text.npos; comma = text.find(',', comma + 1))
        if (KeyOf(text.substr(comma + 1)) < kKeys.size()) return comma;
    return text.size();
}

template <class Number>
bool ParseNumber(std::string_view value, Number& number) {
    const char* end = value.data() + value.size();
    const auto [stopped, problem] = std::from_chars(value.data(), end, number);
    return problem == std::errc() && stopped == end;
}

bool ParsePace(std::string_view value, VirtualAudioOptions& options) {
    options.pace = value == "fast" ? Pace::kFast : Pace::kReal;
    if (value == "fast" || value == "real") return true;
    return ParseNumber(value, options.speed) && options.speed >= 1 && options.speed <= kMostSpeed;
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
    std::array<bool, kKeys.size()> seen{};
    while (!text.empty()) {
        const std::string_view part = text.substr(0, PartLength(text));
        text.remove_prefix(std::min(part.size() + 1, text.size()));
        const std::size_t key = KeyOf(part);
        if (key == kKeys.size())
            return fail("Unknown virtual audio option \"" + std::string(part) + "\".");
        if (std::exchange(seen[key], true))
            return fail("Virtual audio option \"" + std::string(kKeys[key]) + "\" is given twice.");
        const std::string_view value = part.substr(kKeys[key].size());
        bool good = !value.empty();
        if (key == 0) options.inputFile = FromUtf8(value);
        if (key == 1) options.outputFile = FromUtf8(value);
        if (key == 2) good = ParsePace(value, options);
        if (key == 3) good = ParseNumber(value, options.vanishAfterFrames.emplace());
        if (key == 4) options.countFile = FromUtf8(value);
        if (!good) return fail("Virtual audio cannot take \"" + std::string(part) + "\".");
    }
    if (options.inputFile.empty() && options.outputFile.empty())
        return fail("Virtual audio needs in=FILE or out=FILE.");
    if (options.inputFile == options.outputFile)
        return fail("Virtual audio cannot play into the file that it reads.");
    return options;
}

}  // namespace orma
