#include "platform/virtual_audio/file_microphone.h"

#include <algorithm>
#include <vector>

#include <samplerate.h>
#include <sndfile.h>

namespace orma {
namespace {

constexpr std::size_t kChunkFrames = 4096;

struct CloseFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using FileHandle = std::unique_ptr<SNDFILE, CloseFile>;

struct DeleteConverter {
    void operator()(SRC_STATE* state) const { src_delete(state); }
};

FileHandle OpenForReading(const Text& path, SF_INFO& info) {
    info = {};
    return FileHandle(sf_open(ToUtf8(path).c_str(), SFM_READ, &info));
}

}  // namespace

struct FileMicrophone::Libraries {
    FileHandle file;
    std::size_t fileChannels = 0;
    std::size_t channels = 0;
    double ratio = 1.0;
    std::vector<float> fromFile = {};   // a chunk as the file holds it
    std::vector<float> mapped = {};     // the same in the channels asked for
    std::vector<float> converted = {};  // a chunk on its way to 16 bit
    std::unique_ptr<SRC_STATE, DeleteConverter> converter = {};

    /// Reads up to `frames` into `mapped`; returns how many came.
    std::size_t ReadMapped(std::size_t frames) {
        const sf_count_t got =
            sf_readf_float(file.get(), fromFile.data(), static_cast<sf_count_t>(frames));
        const auto count = static_cast<std::size_t>(std::max<sf_count_t>(got, 0));
        for (std::size_t i = 0; i < count; ++i)
            for (std::size_t channel = 0; channel < channels; ++channel)
                mapped[i * channels + channel] =
                    fromFile[i * fileChannels + std::min(channel, fileChannels - 1)];
        return count;
    }

    /// Up to kChunkFrames frames at the rate asked for; `samples` stays valid until the next call.
    std::size_t Next(std::size_t frames, const float*& samples) {
        if (!converter) {
            samples = mapped.data();
            return ReadMapped(frames);
        }
        samples = converted.data();
        return static_cast<std::size_t>(std::max(
            src_callback_read(converter.get(), ratio, static_cast<long>(frames), converted.data()),
            0L));
    }

    static long Feed(void* self, float** data) {
        auto& libraries = *static_cast<Libraries*>(self);
        *data = libraries.mapped.data();
        return static_cast<long>(libraries.ReadMapped(kChunkFrames));
    }
};

FileMicrophone::FileMicrophone(std::unique_ptr<Libraries> libraries)
    : libraries_(std::move(libraries)) {}

FileMicrophone::~FileMicrophone() = default;

std::unique_ptr<FileMicrophone> FileMicrophone::Open(const Text& path, std::uint16_t channels,
                                                     std::uint32_t hz, std::string& problem) {
    SF_INFO info{};
    FileHandle file = OpenForReading(path, info);
    if (!file || info.channels < 1 || info.samplerate < 1) {
        problem = sf_strerror(file.get());
        return nullptr;
    }
    auto libraries = std::make_unique<Libraries>(
        Libraries{std::move(file), static_cast<std::size_t>(info.channels), channels,
                  static_cast<double>(hz) / info.samplerate});
    libraries->fromFile.resize(kChunkFrames * libraries->fileChannels);
    libraries->mapped.resize(kChunkFrames * channels);
    if (static_cast<std::uint32_t>(info.samplerate) != hz) {
        int error = 0;
        if (src_is_valid_ratio(libraries->ratio) != 0)
            libraries->converter.reset(src_callback_new(Libraries::Feed, SRC_SINC_MEDIUM_QUALITY,
                                                        channels, &error, libraries.get()));
        if (!libraries->converter) {
            problem = error != 0 ? src_strerror(error) : "its sample rate cannot be converted";
            return nullptr;
        }
        libraries->converted.resize(kChunkFrames * channels);
    }
    return std::unique_ptr<FileMicrophone>(new FileMicrophone(std::move(libraries)));
}

std::uint16_t FileMicrophone::ChannelsOf(const Text& path) {
    SF_INFO info{};
    return OpenForReading(path, info) ? static_cast<std::uint16_t>(info.channels) : 0;
}

void FileMicrophone::Read(std::span<std::int16_t> samples) {
    const std::size_t channels = libraries_->channels;
    while (!samples.empty()) {
        const float* floats = nullptr;
        const std::size_t got =
            libraries_->Next(std::min(samples.size() / channels, kChunkFrames), floats) * channels;
        if (got == 0) break;
        // Multiplies by 32768, the divisor of the reader: 16-bit samples come back unchanged.
        src_float_to_short_array(floats, samples.data(), static_cast<int>(got));
        samples = samples.subspan(got);
    }
    std::fill(samples.begin(), samples.end(), std::int16_t{0});
}

}  // namespace orma
