#include "platform/simulated/digital_sound.h"

#include <algorithm>
#include <vector>

#include <sndfile.h>

#include "base/trace.h"

namespace orma {
namespace {

constexpr std::size_t kFrameBytes = 6;
constexpr std::size_t kChunkFrames = 1024;

struct CloseFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};

}  // namespace

struct DigitalSound::File {
    std::unique_ptr<SNDFILE, CloseFile> handle;
    SF_INFO info;
    std::vector<int> samples;  // a chunk, left-justified in 32 bits
};

DigitalSound::DigitalSound(std::unique_ptr<File> file) : file_(std::move(file)) {}

DigitalSound::~DigitalSound() = default;

std::unique_ptr<DigitalSound> DigitalSound::Open(const Text& path) {
    SF_INFO info{};
    SNDFILE* const handle = sf_open(ToUtf8(path).c_str(), SFM_READ, &info);
    if (handle == nullptr) {
        Trace("simulated card: \"%s\": %s", ToUtf8(path).c_str(), sf_strerror(nullptr));
        return nullptr;
    }
    auto file = std::make_unique<File>();
    file->handle.reset(handle);
    file->info = info;
    file->samples.resize(kChunkFrames * static_cast<std::size_t>(info.channels));
    return std::unique_ptr<DigitalSound>(new DigitalSound(std::move(file)));
}

std::uint32_t DigitalSound::SampleRate() const {
    return static_cast<std::uint32_t>(file_->info.samplerate);
}

void DigitalSound::Read(std::span<std::uint8_t> frames) {
    const auto channels = static_cast<std::size_t>(file_->info.channels);
    while (!frames.empty()) {
        const std::size_t asked = std::min(frames.size() / kFrameBytes, kChunkFrames);
        const auto got = static_cast<std::size_t>(
            std::max<sf_count_t>(0, sf_readf_int(file_->handle.get(), file_->samples.data(),
                                                 static_cast<sf_count_t>(asked))));
        if (got == 0) break;
        auto to = frames.begin();
        for (std::size_t frame = 0; frame < got; ++frame) {
            for (std::size_t side = 0; side < 2; ++side) {
                const int sample = file_->samples[frame * channels + std::min(side, channels - 1)];
                for (const int shift : {8, 16, 24})
                    *to++ = static_cast<std::uint8_t>(sample >> shift);
            }
        }
        frames = frames.subspan(got * kFrameBytes);
    }
    std::fill(frames.begin(), frames.end(), std::uint8_t{0});
}

}  // namespace orma
