#include "audio/files/audio_read.h"

#include "audio/files/audio_read_mp2_file.h"
#include "audio/files/audio_read_wav_file.h"

namespace orma {

std::uint32_t MonoPeriodBytes(std::uint32_t sampleRate) {
    switch (sampleRate) {
        case 48000:
            return kPeriodBytes48000;
        case 88200:
            return 2 * kPeriodBytes44100;
        case 96000:
            return 2 * kPeriodBytes48000;
        default:
            return kPeriodBytes44100;
    }
}

std::uint32_t PlaybackFormat::BufferBytes(unsigned shift) const {
    return (MonoPeriodBytes(sampleRate) >> shift) * channels;
}

JStreamAudioReadFile::JStreamAudioReadFile(ReaderServices services, const Text& path)
    : JStreamFile(services.files), services_(services), path_(path) {}

void JStreamAudioReadFile::CloseReader() {
    Close();
}

bool JStreamAudioReadFile::OpenForMeasuring() {
    if (!IsOpen()) {
        Open(path_, true);
        if (!IsOpen()) return false;  // reported, with the reason
    }
    if (Has(kGood | kOpen | kReading) && GetSize() > 0) return true;
    services_.files.report.ShowError(u"Empty file");
    return false;
}

bool JStreamAudioReadFile::OpenMeasured() {
    if (!IsOpen()) Open(path_, true);
    return IsOpen() && (measured_ || Measure() > 0);
}

std::unique_ptr<JStreamAudioReadFile> MakeReader(ReaderServices services, const Text& path,
                                                 bool mp2) {
    if (mp2) return std::make_unique<JStreamAudioReadMP2File>(services, path);
    return std::make_unique<JStreamAudioReadWavFile>(services, path);
}

}  // namespace orma
