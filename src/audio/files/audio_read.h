#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "audio/files/audio_state.h"
#include "audio/files/mp2_decoder.h"
#include "audio/files/take_repair.h"
#include "stream/jstream_file.h"

namespace orma {

/// Bytes of 200 ms of mono 16-bit sound at 44100, 48000, 88200 or 96000 Hz.
[[nodiscard]] std::uint32_t MonoPeriodBytes(std::uint32_t sampleRate);

/// What a reader delivers: the output's format. The buffer length follows from it.
struct PlaybackFormat {
    std::uint32_t sampleRate = 44100;  // Hz: 44100 or 48000; a publication asks for the file's own
    std::uint16_t channels = 1;

    /// Bytes of one buffer period of 16-bit sound.
    [[nodiscard]] std::uint32_t BufferBytes(unsigned shift) const;
};

/// What a reader found out about a file.
struct AudioFileFormat {
    std::uint16_t channels = 1;
    std::uint32_t sampleRate = 44100;  // Hz
    std::uint16_t bitsPerSample = 16;
    std::uint32_t dataLength = 0;      // bytes
    std::uint32_t dataOffset = 0;      // bytes from the file's start
    std::uint32_t bytesPerPeriod = 0;  // WAV: PCM bytes; MP2: of the bit-rate setting
    unsigned rateCode = 0;  // relative to the output rate: 0 44100, 1 48000, 2 88200, 3 96000
};

/// What every reader works with; all outlive it.
struct ReaderServices {
    FileServices files;
    AudioState& audio;  // measuring sets its bits per sample, of a WAV file also its sample rate
    Mp2Decoder& decoder;
};

/// Reads a recording back: validates and measures it, moves to a buffer period, delivers one buffer
/// of 16-bit PCM at a time. The order of the operations is part of the design. UI thread.
class JStreamAudioReadFile : public JStreamFile {
  public:
    JStreamAudioReadFile(ReaderServices services, const Text& path);

    /// Opens the file under its stored name unless it is open, moves to `period`, and starts the
    /// conversion to `output`. Check IsOpen().
    virtual void OpenAt(std::uint32_t period, const PlaybackFormat& output) = 0;

    virtual void CloseReader();

    /// Opens if needed, validates, and returns the length in buffer periods; 0 when the file is
    /// refused (reported with its reason).
    [[nodiscard]] virtual std::uint32_t Measure() = 0;

    /// Moves to a buffer period, for decoding to go on there.
    virtual void SeekPeriod(std::uint32_t period) = 0;

    /// Moves without restarting a decoder; returns the MP2 frame index (WAV: the period).
    virtual std::uint32_t PositionAt(std::uint32_t period) = 0;

    /// Fills one playback buffer, BufferBytes() long, with 16-bit PCM in the output's format.
    virtual void Get(std::span<std::uint8_t> buffer) = 0;

    /// True once Get met sound that it could not read back and delivered silence in its place.
    [[nodiscard]] bool IsDamaged() const { return damaged_; }

    [[nodiscard]] const AudioFileFormat& FileFormat() const { return format_; }
    [[nodiscard]] const Text& Path() const { return path_; }

  protected:
    /// For Measure: opens unless open; false, after one box, when that fails or there is nothing to
    /// read ("Empty file").
    [[nodiscard]] bool OpenForMeasuring();

    /// For OpenAt: opens unless open, and measures unless that was done; false on failure.
    [[nodiscard]] bool OpenMeasured();

    ReaderServices services_;
    Text path_;
    AudioFileFormat format_;
    PlaybackFormat output_;
    bool measured_ = false;
    bool damaged_ = false;
};

/// A reader for `path`, by the recording format: MP2 when `mp2` is set, else WAV.
[[nodiscard]] std::unique_ptr<JStreamAudioReadFile> MakeReader(ReaderServices services,
                                                               const Text& path, bool mp2);

/// Sets the MP2 bit-rate setting from the file's first header, as loading a take does before it is
/// validated. A file that begins with "RIFF" thereby yields setting 3 (64 kbit/s): required. False
/// when the file cannot be read.
bool AdoptMp2Bitrate(FileServices files, const Text& path, AudioState& audio,
                     ErrorReporter& report);

}  // namespace orma
