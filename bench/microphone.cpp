// bench_microphone WAV mono|stereo SECONDS: what the simulated microphone alone costs, which is no
// part of recording but of the process that is measured for it.

#include <cstdlib>

#include "measure.h"
#include "platform/virtual_audio/file_microphone.h"

int main(int count, char** words) {
    using namespace orma;
    bench::Require(count == 4, "usage: bench_microphone WAV mono|stereo SECONDS");
    const bool stereo = std::string(words[2]) == "stereo";
    const int periods = std::atoi(words[3]) * 20;
    std::vector<std::int16_t> buffer(stereo ? 2 * 2205 : 2205);
    bench::Compare(stereo ? "microphone.stereo" : "microphone.mono",
                   {{"read", [&] {
                         std::string problem;
                         const auto microphone = FileMicrophone::Open(
                             FromUtf8(words[1]), stereo ? 2 : 1, 44100, problem);
                         bench::Require(microphone != nullptr, problem);
                         for (int period = 0; period < periods; ++period)
                             microphone->Read(buffer);
                     }}});
}
