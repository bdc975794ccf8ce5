#include "platform/simulated/simulated_options.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace orma {
namespace {

constexpr std::string_view kPrefix = "simulated:";
constexpr std::array<std::string_view, 6> kKeys{
    "recorder=", "version=", "card=", "pace=", "fault=", "stall="};

std::string_view KeyOf(std::string_view text) {
    const auto found = std::find_if(kKeys.begin(), kKeys.end(),
                                    [&](std::string_view key) { return text.starts_with(key); });
    return found == kKeys.end() ? std::string_view() : *found;
}

/// The length of the part at the start of `text`: up to a comma that a key follows.
std::size_t PartLength(std::string_view text) {
    for (std::size_t comma = text.find(','); comma != text.npos; comma = text.find(',', comma + 1))
        if (!KeyOf(text.substr(comma + 1)).empty()) return comma;
    return text.size();
}

template <class Number>
bool ParseNumber(std::string_view value, Number& number) {
    const char* end = value.data() + value.size();
    const auto [stopped, problem] = std::from_chars(value.data(), end, number);
    return problem == std::errc() && stopped == end;
}

bool ParseFault(std::string_view value, SimulatedFault& fault) {
    if (value == "no-driver") fault = SimulatedFault::kNoDriver;
    if (value == "no-card") fault = SimulatedFault::kNoCard;
    if (value == "no-signal") fault = SimulatedFault::kNoSignal;
    return fault != SimulatedFault::kNone;
}

bool ParsePart(std::string_view key, std::string_view value, SimulatedOptions& options) {
    if (key == "recorder=") options.recorder = SimulatedRecorderOptions{.file = FromUtf8(value)};
    if (key == "card=") options.card = SimulatedCardOptions{.file = FromUtf8(value)};
    if (key == "recorder=" || key == "card=") return !value.empty();
    if (key == "version=") return options.recorder && ParseNumber(value, options.recorder->version);
    if (!options.card) return false;
    if (key == "stall=") return ParseNumber(value, options.card->stallSeconds.emplace());
    if (key == "fault=") return ParseFault(value, options.card->fault);
    options.card->fast = value == "fast";
    return value == "fast" || value == "real";
}

}  // namespace

std::optional<SimulatedOptions> ParseSimulated(std::string_view text, std::string& error) {
    if (!text.starts_with(kPrefix)) {
        error = "Simulated hardware is written simulated:recorder=FILE or simulated:card=FILE.";
        return std::nullopt;
    }
    text.remove_prefix(kPrefix.size());
    SimulatedOptions options;
    do {
        const std::string_view part = text.substr(0, PartLength(text));
        text.remove_prefix(std::min(part.size() + 1, text.size()));
        const std::string_view key = KeyOf(part);
        if (key.empty() || !ParsePart(key, part.substr(key.size()), options)) {
            error = "Simulated hardware option \"" + std::string(part) + "\" is not understood.";
            return std::nullopt;
        }
    } while (!text.empty());
    return options;
}

}  // namespace orma
