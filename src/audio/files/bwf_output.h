#pragma once

#include "audio/files/writer_context.h"
#include "stream/jstream.h"

namespace orma {

/// What the Broadcast-Wave writers have in common, whatever their stream is: a file, an upload or
/// a message. Failures stay in the stream's status.

/// Writes RIFF head, `bext` and coding history from the publication's templates.
void WriteBextHead(JStream& out, const WriterContext& context);

/// Writes everything that stands before MPEG data and notes where the data starts.
void WriteMpegHead(JStream& out, WriterContext& context);

/// Counts a block of audio data that goes out: byte sum and data bytes.
void CountAudioData(WriterContext& context, ByteSpan block);

/// Counts a block of audio data and writes it.
void WriteAudioData(JStream& out, WriterContext& context, ByteSpan block);

/// Appends `levl` and `qlty`, those that the publication has; `qlty` gets the byte sum of the audio
/// data, so every data byte must have been written. Returns the bytes appended.
std::uint32_t WriteTrailingChunks(JStream& out, const WriterContext& context);

/// Sets the sizes of RIFF and `data` and the sample count of `fact` in a file that can seek, whose
/// data started at the context's data start; then moves to its end.
void PatchBwfSizes(JStream& out, const WriterContext& context, std::uint32_t trailingBytes,
                   std::uint32_t factSamples, std::uint32_t factOffset);

}  // namespace orma
