#include "publish_rig.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

#include <gtest/gtest.h>

#include "audio/files/level_tables.h"
#include "audio/files/vu_file.h"
#include "publish/verify.h"
#include "support/byte_builder.h"

namespace orma::test {

std::vector<std::int16_t> Speech(std::size_t samples, std::uint32_t rate, unsigned channels,
                                 double loudest) {
    std::vector<std::int16_t> sound;
    for (std::size_t i = 0; i < samples; ++i) {
        const double seconds = static_cast<double>(i) / rate;
        const double syllables = 0.55 - 0.45 * std::cos(2 * std::numbers::pi * 1.7 * seconds);
        const double tone = std::sin(2 * std::numbers::pi * 440 * seconds);
        for (unsigned channel = 0; channel < channels; ++channel)
            sound.push_back(static_cast<std::int16_t>(loudest * syllables * tone / (channel + 1)));
    }
    return sound;
}

PublishRig::PublishRig() {
    project.SetPath(Path(), u"talk");
    clock.ticks = 0x00ABCDEF;
    settings.PublishToFile = 1;
    settings.OriginatorCountry = 0x04030201;
    settings.OriginatorOrganisation = 0x08070605;
    settings.OriginatorUser = 0x0C0B0A09;
}

void PublishRig::Date(const Text& fileName) {
    using namespace std::chrono;
    const FileTime made = sys_days(2009y / January / 5) + hours(9) + minutes(7) + seconds(3);
    EXPECT_EQ(files.storage.SetLastWriteTime(Path(fileName), made), 0U);
}

LevelSheet PublishRig::Levelled(const Text& name, const std::vector<std::int16_t>& samples,
                                std::uint32_t rate, unsigned channels) {
    LevelSheet sheet;
    const std::size_t period = rate / 20 * channels;
    for (std::size_t at = 0; at + period <= samples.size(); at += period) {
        int peak = 0;
        for (std::size_t i = at; i < at + period; ++i)
            peak = std::max(peak, std::abs(int{samples[i]}));
        sheet.levels.push_back(LevelOfPeak(static_cast<std::uint32_t>(peak)));
    }
    sheet.rangeEnd = static_cast<std::uint32_t>(sheet.levels.size());
    AddLevels(name, sheet);
    return sheet;
}

LevelSheet PublishRig::AddWav(const Text& name, const std::vector<std::int16_t>& samples,
                              std::uint32_t rate, unsigned channels) {
    const auto bytes = static_cast<std::uint32_t>(samples.size() * 2);
    ByteBuilder file;
    file.Put("RIFF").U32(bytes + 36).Put("WAVEfmt ").U32(16).U16(1).U16(channels);
    file.U32(rate).U32(rate * channels * 2).U16(2).U16(16).Put("data").U32(bytes);
    file.Put(ByteSpan(reinterpret_cast<const std::uint8_t*>(samples.data()), bytes));
    WriteFileBytes(Path(name + u".wav"), file.bytes);
    Date(name + u".wav");
    return Levelled(name, samples, rate, channels);
}

LevelSheet PublishRig::AddMp2(const Text& name, const std::vector<std::int16_t>& samples) {
    Bytes frames;
    const auto collect = [&](ByteSpan block) {
        frames.insert(frames.end(), block.begin(), block.end());
    };
    EXPECT_TRUE(encoder.Mp2EncoderInit(collect, audio.stereo, 48000));
    encoder.Mp2EncodeSamples(
        {reinterpret_cast<const std::uint8_t*>(samples.data()), samples.size() * 2});
    encoder.Mp2EncodeFlush();
    WriteFileBytes(Path(name + u".mp2"), frames);
    Date(name + u".mp2");
    return Levelled(name, samples, 48000, audio.Channels());
}

void PublishRig::AddLevels(const Text& name, const LevelSheet& sheet) {
    EXPECT_TRUE(WriteVuFile(files.services, Path(name + u".jvu"), sheet));
}

void PublishRig::AddTake(const Text& name, std::size_t periods) {
    if (audio.mp2)
        AddMp2(name, Speech(periods * 2400, 48000, 1));
    else
        AddWav(name, Speech(periods * 2205, 44100, 1));
    AddClip(name);
}

void PublishRig::AddClip(const Text& name, std::uint32_t begin, std::uint32_t end,
                         const Text& title) {
    ClipEntry clip;
    clip.name = name;
    clip.folder = Path();
    clip.title = title;
    clip.begin = begin;
    clip.end = end;
    clips.Append(clip);
}

void PublishRig::MakeCurrent(const Text& name, const LevelSheet& sheet) {
    recording.folder = Path();
    recording.name = name;
    recording.audioPath = Path(name + (audio.mp2 ? u".mp2" : u".wav"));
    recording.levelPath = Path(name + u".jvu");
    recording.sheet = sheet;
    recording.length = static_cast<std::uint32_t>(sheet.levels.size());
}

std::string PublishRig::Findings(TextView name) {
    std::string lines;
    for (const Finding& finding : VerifyPublishedFile(services, Path(name)).findings)
        lines += std::to_string(finding.offset) + ": " + finding.text + "\n";
    return lines;
}

PublishJob PublishRig::Job() {
    return PublishJob({readers,
                       clock,
                       writers,
                       project,
                       progress,
                       patience,
                       {settings, choices, services, programFolder},
                       dialogs});
}

}  // namespace orma::test
