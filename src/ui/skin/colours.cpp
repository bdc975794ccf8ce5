#include "ui/skin/colours.h"

#include "settings/section_file.h"

namespace orma {

void SkinColours::Read(Storage& storage, const Text& path) {
    const auto read = [&](std::string_view section, Colour& colour) {
        const auto part = [&](std::string_view key, std::uint8_t& value) {
            value = static_cast<std::uint8_t>(ReadKey(storage, section, key, value, path));
        };
        part("r", colour.red);
        part("g", colour.green);
        part("b", colour.blue);
    };
    read("TextBackgroundColor", textBackground);
    read("TextColor", text);
    read("WaveformColor", waveform);
    read("WaveformEditCutColor", waveformEditCut);
    read("WaveformCutColor", waveformCut);
}

}  // namespace orma
