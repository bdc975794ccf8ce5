#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/bytes.h"
#include "base/text.h"

namespace orma {

// The fields of the system's binary files, all little-endian. Both directions work on the file's
// bytes in memory: thousands of small fields would otherwise cost several system calls a field.
// A text is a 32-bit count of UTF-16 units and, when that is not 0, the units and a terminating 0.

/// Takes fields off a file's bytes, one after the other. Reading never fails: what a short file
/// lacks is zeros and empty texts, which is traced once.
class FieldReader {
  public:
    /// `bytes` outlive the reader.
    explicit FieldReader(ByteSpan bytes) : rest_(bytes) {}

    template <Arithmetic T>
    void Get(T& value) {
        std::array<std::uint8_t, sizeof(T)> bytes{};
        Take(bytes);
        value = LoadLe<T>(bytes.data());
    }

    /// Units from the first 0 or beyond `maxUnits` are dropped, while the next field is the one
    /// behind the whole text. A count that the rest of the file cannot hold takes no memory: the
    /// text is empty and the file ends there.
    void Get(Text& text, std::size_t maxUnits = Text::npos);

    [[nodiscard]] std::size_t Remaining() const { return rest_.size(); }

  private:
    void Take(std::span<std::uint8_t> into);
    void NoteEnd(std::size_t wanted);

    ByteSpan rest_;
    bool noted_ = false;
};

/// Puts a file's bytes together from its fields.
class FieldWriter {
  public:
    /// The four characters that a file begins with.
    void PutTag(std::string_view tag);

    template <Arithmetic T>
    void Put(T value) {
        bytes_.resize(bytes_.size() + sizeof(T));
        StoreLe(bytes_.data() + bytes_.size() - sizeof(T), value);
    }

    void Put(TextView text);

    [[nodiscard]] const Bytes& Written() const { return bytes_; }

  private:
    Bytes bytes_;
};

}  // namespace orma
