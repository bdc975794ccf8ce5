#pragma once

#include <cstdint>

#include "base/text.h"

namespace orma {

/// An audio writer: takes 16-bit PCM and turns it into one kind of output. Exactly one exists at a
/// time, in the WriterSlot. The order of the operations is part of the design. UI thread.
class JStreamAudioWrite {
  public:
    virtual ~JStreamAudioWrite() = default;

    /// The writer's health: open and good; in append-per-block mode good alone, because the file is
    /// closed between blocks.
    [[nodiscard]] virtual bool IsOpen() const { return false; }

    /// Connects to the server with the FTP settings, unless connected.
    virtual void Connect() {}

    /// Ends the current transfer and opens a new remote file.
    virtual void OpenRemote(const Text& /*name*/) {}

    /// Reopens the remote file at a byte offset: 0 done, 1 not supported, 2 cannot connect.
    [[nodiscard]] virtual int Resume(const Text& /*name*/, std::uint32_t /*offset*/) { return 1; }

    /// Resume with the remembered name.
    [[nodiscard]] virtual int Reconnect(std::uint32_t /*offset*/) { return 0; }

    /// Writes the last block again, after a resume.
    virtual void ResendLast() {}

    /// Creates the output `name` (no folder, no extension) and writes its header.
    virtual void Open(const Text& name) = 0;

    /// Flushes and closes, patching sizes where the stream can seek.
    virtual void Close() = 0;

    /// Flushes the encoder, appends the trailing chunks, patches sizes.
    virtual void Finish() {}

    /// Frees the encoder's working buffers.
    virtual void ReleaseEncoder() {}

    /// Takes `bytes` bytes of 16-bit PCM, interleaved when stereo.
    virtual void WriteSamples(const void* pcm, std::uint32_t bytes) = 0;

    /// Takes MP2 bytes from the encoder, or stored frames, and puts them on the output.
    virtual void WriteEncoded(const void* /*data*/, std::uint32_t /*bytes*/) {}
};

}  // namespace orma
