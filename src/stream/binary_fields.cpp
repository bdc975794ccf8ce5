#include "stream/binary_fields.h"

#include <algorithm>
#include <array>

#include "base/bytes.h"

namespace orma {
namespace {

template <class T>
T ReadField(JStream& stream) {
    // A stream that is not readable leaves the buffer alone, so it starts as zeros.
    std::array<std::uint8_t, sizeof(T)> bytes{};
    stream.Read(bytes.data(), sizeof(T));
    return LoadLe<T>(bytes.data());
}

template <class T>
void WriteField(JStream& stream, T value) {
    std::array<std::uint8_t, sizeof(T)> bytes{};
    StoreLe(bytes.data(), value);
    stream.Write(bytes.data(), sizeof(T));
}

}  // namespace

std::uint8_t ReadU8(JStream& stream) {
    return ReadField<std::uint8_t>(stream);
}
std::uint16_t ReadU16(JStream& stream) {
    return ReadField<std::uint16_t>(stream);
}
std::uint32_t ReadU32(JStream& stream) {
    return ReadField<std::uint32_t>(stream);
}
double ReadF64(JStream& stream) {
    return ReadField<double>(stream);
}

Text ReadText(JStreamFile& stream, std::uint32_t maxUnits) {
    const std::uint32_t count = ReadU32(stream);
    if (count == 0) return {};
    const std::uint32_t size = stream.GetSize();
    const std::uint64_t bytes = 2 * (std::uint64_t{count} + 1);
    if (stream.GetPosition() + bytes > size) {
        stream.SetPosition(static_cast<std::int32_t>(size));
        (void)ReadU8(stream);  // finds nothing, which marks the file as cut short
        return {};
    }
    Text text(std::size_t{count} + 1, u'\0');
    stream.Read(text.data(), static_cast<std::uint32_t>(bytes));
    text.resize(std::min<std::size_t>({text.find(u'\0'), count, maxUnits}));
    return text;
}

void WriteU8(JStream& stream, std::uint8_t value) {
    WriteField(stream, value);
}
void WriteU16(JStream& stream, std::uint16_t value) {
    WriteField(stream, value);
}
void WriteU32(JStream& stream, std::uint32_t value) {
    WriteField(stream, value);
}
void WriteF64(JStream& stream, double value) {
    WriteField(stream, value);
}

void WriteText(JStream& stream, TextView text) {
    WriteU32(stream, static_cast<std::uint32_t>(text.size()));
    if (text.empty()) return;
    stream.Write(text.data(), static_cast<std::uint32_t>(2 * text.size()));
    WriteU16(stream, 0);
}

}  // namespace orma
