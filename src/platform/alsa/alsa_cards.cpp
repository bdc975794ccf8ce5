#include "platform/alsa/alsa_cards.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <iterator>

#include <alsa/asoundlib.h>

namespace orma {
namespace {

std::string_view NextLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    return lower;
}

void Ignore(const char*, int, const char*, int, const char*, ...) {}

}  // namespace

// " 1 [Box            ]: USB-Audio - Speech Box", each with a line of details behind it.
std::vector<AlsaCard> ParseAlsaCards(std::string_view listing) {
    std::vector<AlsaCard> cards;
    while (!listing.empty()) {
        const std::string line(NextLine(listing));
        const std::size_t name = line.find(" - ");
        int number = 0;
        if (std::sscanf(line.c_str(), "%d [", &number) != 1 || line.find("]:") > name ||
            name == line.npos)
            continue;
        cards.push_back({number, std::string(Trimmed(std::string_view(line).substr(name + 3)))});
    }
    return cards;
}

// "01-02: IEC958 In : IEC958 In : capture 1"
std::vector<AlsaCapture> ParseAlsaCaptures(std::string_view listing) {
    std::vector<AlsaCapture> captures;
    while (!listing.empty()) {
        const std::string line(NextLine(listing));
        AlsaCapture capture;
        int nameAt = 0;
        if (std::sscanf(line.c_str(), "%d-%d:%n", &capture.card, &capture.device, &nameAt) != 2 ||
            nameAt == 0)
            continue;
        if (line.find(": capture ") == line.npos) continue;
        std::string_view name = std::string_view(line).substr(static_cast<std::size_t>(nameAt));
        capture.name = Trimmed(name.substr(0, name.find(" : ")));
        captures.push_back(capture);
    }
    return captures;
}

std::optional<AlsaCapture> FindDigitalInput(const std::vector<AlsaCapture>& captures) {
    constexpr std::array<std::string_view, 4> kWords{"iec958", "s/pdif", "spdif", "digital"};
    const auto found = std::ranges::find_if(captures, [&](const AlsaCapture& capture) {
        const std::string name = Lower(capture.name);
        return std::ranges::any_of(kWords, [&](auto word) { return name.find(word) != name.npos; });
    });
    return found == captures.end() ? std::nullopt : std::optional(*found);
}

std::string ReadAlsaListing(const std::string& folder, const std::string& name) {
    std::ifstream file(folder + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

void SilenceAlsa() {
    snd_lib_error_set_handler(Ignore);
}

}  // namespace orma
