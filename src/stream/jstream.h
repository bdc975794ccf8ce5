#pragma once

#include <cstdint>

namespace orma {

/// The one byte-stream interface: files, uploads and mail are read and written through it. Callers
/// test `status` after a sequence of operations; an operation on a failed stream does nothing.
/// Positions and sizes are 32-bit bytes; files of 4 GiB or more are outside the design.
class JStream {
  public:
    /// Bits of `status`.
    enum StatusBit : std::uint32_t {
        kGood = 1,     // no error since the last open
        kOpen = 2,     // a handle is held
        kReading = 4,  // opened for reading
        kAtEnd = 8,    // a read returned fewer bytes than asked
    };

    virtual ~JStream() = default;

    /// Moves to `offset` bytes from the start.
    virtual void SetPosition(std::int32_t offset);

    /// The current offset in bytes from the start.
    [[nodiscard]] virtual std::uint32_t GetPosition();

    /// Moves by `offset` bytes from the current position.
    virtual void Skip(std::int32_t offset);

    /// Reads `count` bytes into `buffer`; what the source lacks is filled with zeros.
    virtual void Read(void* buffer, std::uint32_t count) = 0;

    /// Writes `count` bytes.
    virtual void Write(const void* buffer, std::uint32_t count) = 0;

    [[nodiscard]] std::uint32_t Status() const { return status; }
    [[nodiscard]] bool Has(std::uint32_t bits) const { return (status & bits) == bits; }

  protected:
    std::uint32_t status = 0;
};

/// Writes a little-endian number at `offset` bytes from the start of a stream that can move, and
/// leaves the position behind it.
void WriteNumberAt(JStream& stream, std::uint32_t offset, std::uint32_t value);

}  // namespace orma
