#include "platform/virtual_audio/file_loudspeaker.h"

#include <utility>

#include <sndfile.h>

namespace orma {
namespace {

class WavLoudspeaker : public FileLoudspeaker {
  public:
    explicit WavLoudspeaker(SNDFILE* file) : file_(file) {
        sf_command(file_, SFC_SET_UPDATE_HEADER_AUTO, nullptr, SF_TRUE);
    }
    ~WavLoudspeaker() override { (void)Close(); }
    WavLoudspeaker(const WavLoudspeaker&) = delete;
    WavLoudspeaker& operator=(const WavLoudspeaker&) = delete;

    bool Write(std::span<const std::int16_t> samples) override {
        const auto count = static_cast<sf_count_t>(samples.size());
        return sf_write_short(file_, samples.data(), count) == count;
    }

    bool Close() override {
        SNDFILE* const file = std::exchange(file_, nullptr);
        return file == nullptr || sf_close(file) == 0;
    }

  private:
    SNDFILE* file_;
};

}  // namespace

std::unique_ptr<FileLoudspeaker> FileLoudspeaker::Open(const Text& path, std::uint16_t channels,
                                                       std::uint32_t hz, std::string& problem) {
    SF_INFO info{};
    info.channels = channels;
    info.samplerate = static_cast<int>(hz);
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(ToUtf8(path).c_str(), SFM_WRITE, &info);
    if (file == nullptr) {
        problem = sf_strerror(nullptr);
        return nullptr;
    }
    return std::make_unique<WavLoudspeaker>(file);
}

}  // namespace orma
