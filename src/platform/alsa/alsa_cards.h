#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orma {

/// A sound card as "/proc/asound/cards" lists it.
struct AlsaCard {
    int number = 0;
    std::string name;  // product name: what stands behind the driver's
};

/// A PCM device that captures, as "/proc/asound/pcm" lists it.
struct AlsaCapture {
    int card = 0;
    int device = 0;
    std::string name;
};

[[nodiscard]] std::vector<AlsaCard> ParseAlsaCards(std::string_view listing);
[[nodiscard]] std::vector<AlsaCapture> ParseAlsaCaptures(std::string_view listing);

/// The first capture device that is a digital input by its name (IEC 958, S/PDIF, digital).
[[nodiscard]] std::optional<AlsaCapture> FindDigitalInput(const std::vector<AlsaCapture>& captures);

/// A listing of the kernel; empty when there is none, which is all that a machine without sound
/// cards costs: the ALSA library is not touched.
[[nodiscard]] std::string ReadAlsaListing(const std::string& folder, const std::string& name);

/// Where the kernel keeps its listings.
inline constexpr const char* kAlsaFolder = "/proc/asound/";

/// Keeps the library's complaints off standard error, where the program's own words stand.
void SilenceAlsa();

}  // namespace orma
