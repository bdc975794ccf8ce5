// Checks of `bext`.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string_view>

#include "audio/files/bwf_chunks.h"
#include "publish/umid.h"
#include "publish/verify_head.h"

namespace orma {
namespace {

// Places in the file; a published file's `bext` is its first chunk, but findings hold for any.
constexpr std::uint32_t kFieldBytes = 602;
constexpr std::uint64_t kDescription = 0;
constexpr std::uint64_t kOriginator = 256;
constexpr std::uint64_t kReference = 288;
constexpr std::uint64_t kDate = 320;
constexpr std::uint64_t kTime = 330;
constexpr std::uint64_t kTimeReferenceField = 338;
constexpr std::uint64_t kVersion = 346;
constexpr std::uint64_t kUmid = 348;
constexpr std::uint64_t kReserved = 412;

/// Two characters, the first of which may be a space.
int Number(std::string_view two) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (!isDigit(two[1]) || (two[0] != ' ' && !isDigit(two[0]))) return -1;
    return (two[0] == ' ' ? 0 : two[0] - '0') * 10 + two[1] - '0';
}

bool ParseDate(std::string_view text, DateTime& into) {
    const int century = Number(text.substr(0, 2));
    const int year = Number(text.substr(2, 2));
    const int month = Number(text.substr(5, 2));
    const int day = Number(text.substr(8, 2));
    if (century < 0 || year < 0 || text[2] == ' ' || text[4] != '-' || text[7] != '-') return false;
    const std::chrono::year_month_day date{std::chrono::year(century * 100 + year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    into.year = static_cast<std::uint16_t>(century * 100 + year);
    into.month = static_cast<std::uint16_t>(month);
    into.day = static_cast<std::uint16_t>(day);
    return month > 0 && day > 0 && date.ok();
}

bool ParseTime(std::string_view text, DateTime& into) {
    const int hour = Number(text.substr(0, 2));
    const int minute = Number(text.substr(3, 2));
    const int second = Number(text.substr(6, 2));
    into.hour = static_cast<std::uint16_t>(hour);
    into.minute = static_cast<std::uint16_t>(minute);
    into.second = static_cast<std::uint16_t>(second);
    return text[2] == ':' && text[5] == ':' && hour >= 0 && hour < 24 && minute >= 0 &&
           minute < 60 && second >= 0 && second < 60;
}

/// True when the field holds `text` and zeros.
template <std::size_t Size>
bool HoldsText(const std::array<char, Size>& field, std::string_view text) {
    const std::string_view whole(field.data(), Size);
    return whole.starts_with(text) && whole.find_first_not_of('\0', text.size()) == whole.npos;
}

void CheckUmid(const BwfHead& bext, std::uint64_t at, const PublishedHead& head,
               VerifyNotes& notes) {
    const auto& umid = bext.umid;
    const std::size_t before = notes.Found();
    // The label stands in the template; channels and length are the publication's.
    const auto& label = BwfHead::Template().umid;
    for (std::size_t i = 0; i < 16; ++i)
        if (i != 10 && i != 12 && umid[i] != label[i])
            notes.Find(at + i, Format("UMID label byte %zu is %02X", i, umid[i]));
    if (head.formatKnown && umid[10] != (head.format.channels == 2 ? 9 : 8))
        notes.Find(at + 10, Format("UMID material type is %02X", umid[10]));
    notes.Require(umid[12] == 0x33, at + 12, "UMID is not an extended one");
    notes.Require(LoadLe<std::uint32_t>(&umid[16]) == bext.timeReferenceLow, at + 16,
                  "UMID time differs from the time reference");
    std::uint32_t day = 0;
    for (std::size_t i = 23; i-- > 20;)
        day = day * 100 + (umid[i] >> 4) * 10U + (umid[i] & 15U);
    if (head.recordedValid && day != ModifiedJulianDay(head.recorded))
        notes.Find(at + 20, Format("UMID day is %u, the date is day %u", day,
                                   ModifiedJulianDay(head.recorded)));
    notes.Require(umid[23] == 0x80, at + 23, "UMID byte 23 is not 80");
    notes.Require(AllZero(ByteSpan(umid).subspan(26, 26)), at + 26, "UMID bytes 26 to 51 not zero");
    if (notes.Found() == before) notes.Fact("UMID fits date, time and channels");
}

void CheckDates(const BwfHead& bext, std::uint64_t at, PublishedHead& head, VerifyNotes& notes) {
    const std::string_view date(bext.originationDate.data(), bext.originationDate.size());
    const std::string_view time(bext.originationTime.data(), bext.originationTime.size());
    const bool dateValid = ParseDate(date, head.recorded);
    const bool timeValid = ParseTime(time, head.recorded);
    head.recordedValid = dateValid && timeValid;
    notes.Require(dateValid, at + kDate, "origination date is none");
    notes.Require(timeValid, at + kTime, "origination time is none");
    if (!head.recordedValid) return;
    if (bext.timeReferenceLow != TimeReference(head.recorded))
        notes.Find(at + kTimeReferenceField,
                   Format("time reference is %u, the time is %u samples of 48000 Hz",
                          bext.timeReferenceLow, TimeReference(head.recorded)));
    else
        notes.Fact("recorded " + std::string(date) + " " + std::string(time) +
                   ", time reference fits");
}

void CheckHistory(const std::string& history, std::uint64_t at, const PublishedHead& head,
                  VerifyNotes& notes) {
    const std::size_t length = history.find('\0');
    if (length == std::string::npos) {
        notes.Find(at, "coding history has no end");
        return;
    }
    const std::string text = history.substr(0, length);
    if (history.size() != (length & ~std::size_t{1}) + 2 ||
        history.find_first_not_of('\0', length) != std::string::npos)
        notes.Find(at + length, "coding history is not filled up as it should be");
    if (!head.formatKnown) return;
    PublicationFormat format = head.format;
    unsigned rate = 0;
    const bool hasRate = std::sscanf(text.c_str(), "A=PCM,F=%6u,", &rate) == 1;
    format.recordingRate = rate;
    if (!hasRate || rate < 8000 || rate > 192000 || text != CodingHistory(format))
        notes.Find(at, "coding history does not describe this file");
    else
        notes.Fact(Format("coding history fits, recorded at %u Hz", rate));
}

}  // namespace

void CheckBext(VerifySource& source, const FileChunk& chunk, PublishedHead& head,
               VerifyNotes& notes) {
    constexpr std::uint32_t kLongestHistory = 4096;
    // The head value type begins with the 20 bytes of the RIFF and chunk heads.
    constexpr std::size_t kHeads = BwfHead::kBytes - kFieldBytes;
    Bytes bytes(BwfHead::kBytes);
    StoreTag(&bytes[0], "RIFF");
    StoreTag(&bytes[8], "WAVE");
    StoreTag(&bytes[12], "bext");
    const std::uint64_t at = chunk.Content();
    if (chunk.size <= kFieldBytes || chunk.size - kFieldBytes > kLongestHistory ||
        !source.Read(at, std::span(bytes).subspan(kHeads))) {
        notes.Find(chunk.offset + 4, Format("'bext' has %u bytes", chunk.size));
        return;
    }
    std::string history(chunk.size - kFieldBytes, '\0');
    if (!source.Read(at + kFieldBytes,
                     {reinterpret_cast<std::uint8_t*>(history.data()), history.size()})) {
        notes.Find(at + kFieldBytes, "coding history cannot be read");
        return;
    }
    const BwfHead bext = BwfHead::Decode(bytes).value_or(BwfHead{});

    notes.Require(bext.description.back() == 0, at + kDescription, "description has no end");
    notes.Require(HoldsText(bext.originator, "PC"), at + kOriginator, "originator is not 'PC'");
    notes.Require(HoldsText(bext.originatorReference, "Orma"), at + kReference,
                  "originator reference is not 'Orma'");
    notes.Require(bext.version == 1, at + kVersion, "version is not 1");
    notes.Require(bext.timeReferenceHigh == 0, at + kTimeReferenceField + 4,
                  "time reference beyond a day");
    notes.Require(AllZero(ByteSpan(bytes).subspan(kHeads + kReserved)), at + kReserved,
                  "reserved bytes not zero");
    CheckDates(bext, at, head, notes);
    CheckUmid(bext, at + kUmid, head, notes);
    CheckHistory(history, at + kFieldBytes, head, notes);
}

}  // namespace orma
