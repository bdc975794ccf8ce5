#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/text.h"

namespace orma {

/// PCM format of an open wave device.
struct WaveFormat {
    std::uint16_t channels = 1;
    std::uint32_t samplesPerSecond = 44100;
    std::uint32_t averageBytesPerSecond = 88200;
    std::uint16_t blockAlign = 2;  // bytes of one sample of all channels
    std::uint16_t bitsPerSample = 16;

    friend bool operator==(const WaveFormat&, const WaveFormat&) = default;
};

/// Whether a format is what the adapters take: consistent 16-bit sound in one or two channels, at
/// 1000 to 192000 Hz.
[[nodiscard]] bool IsSupported(const WaveFormat& format);

/// One buffer on its way to or from a device. The memory belongs to the caller; between Add (or
/// Write) and its return the device alone touches it.
struct WaveHeader {
    std::uint8_t* data = nullptr;
    std::uint32_t bufferLength = 0;   // bytes
    std::uint32_t bytesRecorded = 0;  // set by an input device; the rest of the buffer is zeros
    std::uint32_t user = 0;           // the caller's own number
};

/// Outcome of a device call; the engines report the call's name, the trace says more.
enum class WaveResult { kOk, kNoDevice, kBadFormat, kNotPrepared, kFailed };

/// Why a running device can deliver, or take, no more.
enum class WaveLoss {
    kVanished,  // unplugged, or its sound server ended
    kStalled,   // no data asked for or given for longer than the adapter's watchdog allows
};

/// What an open input device tells its user. UI thread, never from within a device call.
class WaveInEvents {
  public:
    virtual ~WaveInEvents() = default;

    /// A buffer came back, filled or flushed by a reset.
    virtual void OnWaveInData(WaveHeader& header) = 0;

    /// The device delivers no more; queued buffers come back only through Reset. Told once.
    virtual void OnWaveInLost(WaveLoss reason) = 0;
};

/// An open wave input, shaped after the multimedia API: prepare, add, start, stop, reset,
/// unprepare, close. Behind the queued buffers the adapter keeps a backlog of at
/// least 10 s, so that a stall of the UI thread loses no sample. UI thread; calls do not block
/// longer than 2 s.
class WaveInDevice {
  public:
    virtual ~WaveInDevice() = default;

    [[nodiscard]] virtual WaveResult Prepare(WaveHeader& header) = 0;
    [[nodiscard]] virtual WaveResult Unprepare(WaveHeader& header) = 0;

    /// Queues a prepared buffer; buffers are filled in the order they were added.
    [[nodiscard]] virtual WaveResult Add(WaveHeader& header) = 0;

    [[nodiscard]] virtual WaveResult Start() = 0;

    /// Ends capture; what was captured before stays in the backlog until Reset flushes it.
    [[nodiscard]] virtual WaveResult Stop() = 0;

    /// Ends capture, hands out what the backlog still holds in the queued buffers, zero-fills what
    /// was not recorded, and returns every queued buffer through OnWaveInData. What the queued
    /// buffers could not take stays in the backlog for buffers added later and another Reset; only
    /// the next Start drops it.
    [[nodiscard]] virtual WaveResult Reset() = 0;

    /// Sample frames lost since Start because even the backlog was full, or the driver said so.
    [[nodiscard]] virtual std::uint64_t LostFrames() const = 0;

    /// Gives the device back, queued buffers with it: none of them comes back any more. Whatever
    /// the result, only destruction may follow, which closes a device that is still open without
    /// telling, or waiting for, how that ends.
    [[nodiscard]] virtual WaveResult Close() = 0;
};

/// What an open output device tells its user. UI thread, never from within a device call.
class WaveOutEvents {
  public:
    virtual ~WaveOutEvents() = default;

    /// A buffer has gone to the driver, or was returned by a reset. An empty buffer comes back once
    /// everything that was written before it has been heard.
    virtual void OnWaveOutDone(WaveHeader& header) = 0;

    /// The device plays no more; its buffers come back only through Reset. Told once.
    virtual void OnWaveOutLost(WaveLoss reason) = 0;
};

/// An open wave output: prepare, write, pause, restart, reset, unprepare, close. It plays what is
/// written without a gap as long as a buffer waits. UI thread; calls do not block longer than 2 s.
class WaveOutDevice {
  public:
    virtual ~WaveOutDevice() = default;

    [[nodiscard]] virtual WaveResult Prepare(WaveHeader& header) = 0;
    [[nodiscard]] virtual WaveResult Unprepare(WaveHeader& header) = 0;

    /// Queues a prepared buffer, which may be empty; buffers are played in the order they were
    /// written.
    [[nodiscard]] virtual WaveResult Write(WaveHeader& header) = 0;

    /// Holds the sound until Restart or Reset; buffers may be written meanwhile.
    [[nodiscard]] virtual WaveResult Pause() = 0;
    [[nodiscard]] virtual WaveResult Restart() = 0;

    /// Stops at once, ends a pause, and returns every queued buffer through OnWaveOutDone.
    [[nodiscard]] virtual WaveResult Reset() = 0;

    /// Gives the device back; what was not heard yet is cut off. Otherwise as for an input.
    [[nodiscard]] virtual WaveResult Close() = 0;
};

/// One device of a sound system, as listings show it.
struct WaveDeviceInfo {
    Text name;
    std::uint16_t channels = 0;  // the most it offers
    bool isDefault = false;
};

/// The sound system. UI thread.
class WaveSystem {
  public:
    virtual ~WaveSystem() = default;

    [[nodiscard]] virtual std::vector<WaveDeviceInfo> Inputs() = 0;
    [[nodiscard]] virtual std::vector<WaveDeviceInfo> Outputs() = 0;

    /// Opens the named input, or any that takes the format when the name is empty. `events`
    /// outlives the device.
    [[nodiscard]] virtual WaveResult OpenInput(const Text& name, const WaveFormat& format,
                                               WaveInEvents& events,
                                               std::unique_ptr<WaveInDevice>& device) = 0;

    /// Opens the named output, or any that takes the format when the name is empty. `events`
    /// outlives the device.
    [[nodiscard]] virtual WaveResult OpenOutput(const Text& name, const WaveFormat& format,
                                                WaveOutEvents& events,
                                                std::unique_ptr<WaveOutDevice>& device) = 0;

    /// Sets the volume of all outputs, open ones and those to be opened: 0..65535 for each side, of
    /// which 65535 passes samples unchanged (n scales by n / 65535); mono follows the left side.
    [[nodiscard]] virtual WaveResult SetOutputVolume(std::uint16_t left, std::uint16_t right) = 0;
};

}  // namespace orma
