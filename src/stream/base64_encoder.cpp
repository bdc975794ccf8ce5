#include "stream/base64_encoder.h"

#include <algorithm>
#include <cstring>

namespace orma {
namespace {

constexpr std::size_t kGroupsPerLine = 19;  // lines of 76 characters (RFC 2045, 6.8)
constexpr std::size_t kGroup = 3;           // bytes, which become 4 characters
constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The two characters of each 12-bit value: two look-ups a group instead of four.
constexpr std::array<std::array<char, 2>, 4096> kPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t value = 0; value < pairs.size(); ++value)
        pairs[value] = {kAlphabet[value >> 6], kAlphabet[value & 63]};
    return pairs;
}();

/// Writes the 4 characters of 3 bytes; returns the place behind them.
inline char* PutGroup(char* to, const std::uint8_t* from) {
    const unsigned high = (unsigned{from[0]} << 4) | (from[1] >> 4);
    const unsigned low = ((from[1] & 15U) << 8) | from[2];
    std::memcpy(to, kPairs[high].data(), 2);
    std::memcpy(to + 2, kPairs[low].data(), 2);
    return to + 4;
}

/// Writes the 8 characters of 6 bytes, of which 8 can be read; returns the place behind them. One
/// load for four look-ups makes it twice as fast as group by group.
inline char* PutTwoGroups(char* to, const std::uint8_t* from) {
    const std::uint64_t bits = __builtin_bswap64(LoadLe<std::uint64_t>(from));
    for (int shift = 52; shift >= 16; shift -= 12, to += 2)
        std::memcpy(to, kPairs[(bits >> shift) & 0xfff].data(), 2);
    return to;
}

/// Encodes the 1 or 2 last bytes of a text, padded.
void PutEnd(char* to, const std::uint8_t* from, std::size_t count) {
    const std::array<std::uint8_t, kGroup> padded = {from[0], count > 1 ? from[1] : std::uint8_t{0},
                                                     0};
    char* const end = PutGroup(to, padded.data());
    std::fill(end - (kGroup - count), end, '=');
}

}  // namespace

void Base64Encoder::Reset() {
    carried_ = 0;
    groupsOnLine_ = 0;
}

std::string_view Base64Encoder::Encode(ByteSpan input) {
    // A third more, and a line end for 57 bytes, stays below twice the size; the rest is for the
    // carry. The buffer never shrinks: pieces are of one size.
    const std::size_t room = 2 * input.size() + 16;
    if (output_.size() < room) output_.resize(room);
    char* to = output_.data();

    const auto endLine = [&] {
        to = std::copy_n("\r\n", 2, to);
        groupsOnLine_ = 0;
    };
    if (carried_ > 0) {
        const std::size_t joining = std::min(kGroup - carried_, input.size());
        std::copy_n(input.begin(), joining, carry_.begin() + carried_);
        carried_ += joining;
        input = input.subspan(joining);
        if (carried_ < kGroup) return {};
        to = PutGroup(to, carry_.data());
        if (++groupsOnLine_ == kGroupsPerLine) endLine();
    }
    const std::uint8_t* from = input.data();
    std::size_t groups = input.size() / kGroup;
    while (groups > 0) {
        const std::size_t now = std::min(groups, kGroupsPerLine - groupsOnLine_);
        std::size_t left = now;
        for (; left > 2; left -= 2, from += 2 * kGroup)
            to = PutTwoGroups(to, from);
        for (; left > 0; --left, from += kGroup)
            to = PutGroup(to, from);
        groups -= now;
        groupsOnLine_ += now;
        if (groupsOnLine_ == kGroupsPerLine) endLine();
    }
    carried_ = input.size() % kGroup;
    std::copy_n(from, carried_, carry_.begin());
    return {output_.data(), static_cast<std::size_t>(to - output_.data())};
}

std::string_view Base64Encoder::Finish() {
    if (carried_ == 0) return {};
    if (output_.size() < 4) output_.resize(4);
    PutEnd(output_.data(), carry_.data(), carried_);
    carried_ = 0;
    return {output_.data(), 4};
}

std::string Base64(std::string_view text) {
    std::string encoded((text.size() + 2) / kGroup * 4, '\0');
    const std::uint8_t* from = AsBytes(text).data();
    char* to = encoded.data();
    for (std::size_t groups = text.size() / kGroup; groups > 0; --groups, from += kGroup)
        to = PutGroup(to, from);
    if (text.size() % kGroup != 0) PutEnd(to, from, text.size() % kGroup);
    return encoded;
}

std::string FromBase64(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size() / 4 * kGroup + 2);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char character : text) {
        const std::size_t value = kAlphabet.find(character);
        if (value == std::string_view::npos) break;
        bits = (bits << 6) | static_cast<std::uint32_t>(value);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        decoded.push_back(static_cast<char>((bits >> count) & 0xff));
    }
    return decoded;
}

}  // namespace orma
