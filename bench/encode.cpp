// bench_encode WAV FOLDER mono|stereo: a 44100 Hz WAV file to MP2, as the program does it, against
// the encoder library alone and against two common commands.

#include <twolame.h>

#include "audio/files/rate_converter.h"
#include "audio/files/take_repair.h"
#include "audio/files/writer_slot.h"
#include "measure.h"

namespace orma::bench {
namespace {

/// Reader, frame assembler, conversion, encoder and file: the whole way of the samples.
void EncodeOurs(Desk& desk, const Text& wav, const Text& folder) {
    Mp2Pipeline encoder(desk.audio, desk.Report());
    WriterContext context{.files = desk.Files(), .audio = desk.audio, .encoder = encoder};
    context.recordingFolder = folder;
    WriterSlot writers(context);
    writers.SelectWriter(WriterKind::kMp2File);
    const auto reader = MakeReader(desk.Readers(), wav, false);
    const std::uint32_t periods = reader->Measure();
    const PlaybackFormat format{44100, desk.audio.Channels()};
    reader->OpenAt(0, format);
    Bytes buffer(format.BufferBytes(desk.audio.resolutionShift));
    writers.Current()->Open(u"ours");
    for (std::uint32_t period = 0; period < periods; ++period) {
        reader->Get(buffer);
        writers.Current()->WriteSamples(buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    }
    Require(reader->IsOpen() && writers.Current()->IsOpen(), "the take failed");
    writers.Current()->Close();
    DropTakeJournal(desk.Files(), folder + u"ours.mp2");  // as its project does
}

/// The library with our settings on samples that lie ready at 48000 Hz, a frame a call, into
/// memory.
void EncodeLibrary(const AudioState& audio, const std::vector<std::int16_t>& samples) {
    twolame_options* options = twolame_init();
    twolame_set_verbosity(options, 0);
    twolame_set_num_channels(options, audio.Channels());
    twolame_set_mode(options, audio.stereo ? TWOLAME_STEREO : TWOLAME_MONO);
    twolame_set_in_samplerate(options, 48000);
    twolame_set_out_samplerate(options, 48000);
    twolame_set_bitrate(options, static_cast<int>(audio.bitrate.BitsPerSecond() / 1000));
    twolame_set_psymodel(options, 3);
    Require(twolame_init_params(options) == 0, "twolame refuses its settings");
    std::vector<unsigned char> mp2(4096);
    const std::size_t frame = std::size_t{kMp2FrameSamples} * audio.Channels();
    std::size_t bytes = 0;
    for (std::size_t at = 0; at + frame <= samples.size(); at += frame)
        bytes += static_cast<std::size_t>(twolame_encode_buffer_interleaved(
            options, &samples[at], kMp2FrameSamples, mp2.data(), static_cast<int>(mp2.size())));
    Require(bytes > samples.size() / 100, "twolame encoded nothing");
    twolame_close(&options);
}

/// What the library is to encode: the same sound at 48000 Hz.
std::vector<std::int16_t> Converted(const std::vector<std::int16_t>& in, unsigned channels) {
    RateConverter converter;
    Require(converter.Start(44100), "the converter refuses 44100 Hz");
    std::vector<std::int16_t> out;
    std::vector<std::int16_t> left(kMp2FrameSamples);
    std::vector<std::int16_t> right(kMp2FrameSamples);
    std::size_t at = 0;
    while (at + converter.InputNeeded(kMp2FrameSamples) * channels <= in.size()) {
        at += converter.Convert(std::span(in).subspan(at), channels, left, right) * channels;
        for (std::size_t i = 0; i < left.size(); ++i) {
            out.push_back(left[i]);
            if (channels == 2) out.push_back(right[i]);
        }
    }
    return out;
}

void Run(const std::string& wav, const std::string& folder, bool stereo) {
    Desk desk(stereo);
    const std::vector<std::int16_t> ready = Converted(WavSamples(wav), desk.audio.Channels());
    const std::string kbps = std::to_string(desk.audio.bitrate.BitsPerSecond() / 1000);
    const std::string channels = stereo ? "2" : "1";
    const std::string chain =
        "sox " + wav + " -r 48000 -t raw - | twolame --quiet -r -s 48000 -N " + channels + " -m " +
        (stereo ? "s" : "m") + " -b " + kbps + " - " + folder + "chain.mp2";
    Compare(stereo ? "encode.stereo" : "encode.mono",
            {{"ours", [&] { EncodeOurs(desk, FromUtf8(wav), FromUtf8(folder)); }},
             {"library", [&] { EncodeLibrary(desk.audio, ready); }},
             {"chain", [&] { Shell(chain); }}});
}

}  // namespace
}  // namespace orma::bench

int main(int count, char** words) {
    orma::bench::Require(count == 4, "usage: bench_encode WAV FOLDER mono|stereo");
    orma::bench::Run(words[1], words[2], std::string(words[3]) == "stereo");
}
