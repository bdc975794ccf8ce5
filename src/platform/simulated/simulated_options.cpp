#include "platform/simulated/simulated_options.h"

#include <array>

#include "base/number.h"
#include "platform/option_text.h"

namespace orma {
namespace {

constexpr std::string_view kPrefix = "simulated:";
constexpr std::array<std::string_view, 6> kKeys{
    "recorder=", "version=", "card=", "pace=", "fault=", "stall="};

template <class Number, class Field>
bool ReadNumber(std::string_view value, Field& field) {
    const auto number = ParseNumber<Number>(value);
    if (number) field = *number;
    return number.has_value();
}

bool ParseFault(std::string_view value, SimulatedFault& fault) {
    if (value == "no-driver") fault = SimulatedFault::kNoDriver;
    if (value == "no-card") fault = SimulatedFault::kNoCard;
    if (value == "no-signal") fault = SimulatedFault::kNoSignal;
    return fault != SimulatedFault::kNone;
}

bool ParsePart(const OptionPart& part, SimulatedOptions& options) {
    const auto [text, key, value] = part;
    if (key.empty()) return false;
    if (key == "recorder=") options.recorder = SimulatedRecorderOptions{.file = FromUtf8(value)};
    if (key == "card=") options.card = SimulatedCardOptions{.file = FromUtf8(value)};
    if (key == "recorder=" || key == "card=") return !value.empty();
    if (key == "version=")
        return options.recorder && ReadNumber<std::uint16_t>(value, options.recorder->version);
    if (!options.card) return false;
    if (key == "stall=") return ReadNumber<std::uint32_t>(value, options.card->stallSeconds);
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
        const OptionPart part = TakeOption(text, kKeys);
        if (!ParsePart(part, options)) {
            error =
                "Simulated hardware option \"" + std::string(part.text) + "\" is not understood.";
            return std::nullopt;
        }
    } while (!text.empty());
    return options;
}

}  // namespace orma
