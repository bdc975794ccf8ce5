#include "publish_rig.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

#include "audio/files/level_tables.h"
#include "audio/files/vu_file.h"
#include "publish/verify.h"
#include "stream/base64_encoder.h"
#include "support/sound_files.h"

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
    context.remote.ftp = &ftp;
    context.remote.mail = &mail;
    project.SetPath(Path(), u"talk");
    clock.ticks = 0x00ABCDEF;
    settings.PublishToFile = 1;
    settings.ImagePublishing = 0;
    settings.FtpServer = u"srv";
    settings.SmtpServer = u"mx";
    settings.OriginatorCountry = 0x04030201;
    settings.OriginatorOrganisation = 0x08070605;
    settings.OriginatorUser = 0x0C0B0A09;
}

void PublishRig::SetFormat(bool mp2, unsigned channels) {
    audio.mp2 = mp2;
    audio.stereo = mp2 && channels == 2;
    audio.bitrate.SetMp2Bitrate(audio.stereo ? 7 : 3, report);
}

LevelSheet PublishRig::AddTake(const Text& name, const std::vector<std::int16_t>& samples,
                               std::uint32_t rate, unsigned channels) {
    const Text path = Path(name + (audio.mp2 ? u".mp2" : u".wav"));
    if (audio.mp2) {
        rate = 48000;
        channels = audio.Channels();
        Bytes frames;
        const auto collect = [&](ByteSpan block) {
            frames.insert(frames.end(), block.begin(), block.end());
        };
        EXPECT_TRUE(encoder.Mp2EncoderInit(collect, audio.stereo, rate));
        encoder.Mp2EncodeSamples(
            {reinterpret_cast<const std::uint8_t*>(samples.data()), samples.size() * 2});
        encoder.Mp2EncodeFlush();
        WriteFileBytes(path, frames);
    } else {
        WriteSoundFile(path, static_cast<std::uint16_t>(channels), rate, samples);
    }
    using namespace std::chrono;
    const FileTime made = sys_days(2009y / January / 5) + hours(9) + minutes(7) + seconds(3);
    EXPECT_EQ(storage.SetLastWriteTime(path, made), 0U);

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

void PublishRig::AddLevels(const Text& name, const LevelSheet& sheet) {
    EXPECT_TRUE(WriteVuFile(files, Path(name + u".jvu"), sheet));
}

void PublishRig::AddSpeech(const Text& name, std::size_t periods) {
    const std::uint32_t rate = audio.mp2 ? 48000 : 44100;
    AddTake(name, Speech(periods * rate / 20, rate, 1));
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

void PublishRig::AddClips(bool mp2, std::uint32_t rate, unsigned channels) {
    SetFormat(mp2, channels);
    clips.Clear();
    if (mp2) rate = 48000;
    const std::size_t period = rate / 20;
    LevelSheet sheet =
        AddTake(u"talk00", Speech(60 * period + 701, rate, channels), rate, channels);
    sheet.cuts = {{20, 29, 0}};
    sheet.marks = {5, 40};
    AddLevels(u"talk00", sheet);
    AddTake(u"talk01", Speech(50 * period, rate, channels, 9000), rate, channels);
    AddClip(u"talk01", 10, 41);
    AddClip(u"talk00");
    project.SetProjectText(u"Harbour");
}

void PublishRig::ExpectMails(int messages) {
    for (int i = 0; i < messages; ++i)
        for (const char* reply : {"220 here\r\n", "250 hello\r\n", "250 sender\r\n",
                                  "250 recipient\r\n", "354 go on\r\n", "250 taken\r\n", "221\r\n"})
            tcp.replies.emplace_back(reply);
}

std::vector<Bytes> PublishRig::Attachments() const {
    std::vector<Bytes> attachments;
    const std::string sent = tcp.Sent();
    const std::string head = "Content-Disposition: attachment;";
    for (std::size_t at = sent.find(head); at != std::string::npos; at = sent.find(head, at + 1)) {
        const std::size_t begin = sent.find("\r\n\r\n", at) + 4;
        std::string text = sent.substr(begin, sent.find("\r\n--", begin) - begin);
        std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
        text = FromBase64(text);
        attachments.emplace_back(text.begin(), text.end());
    }
    return attachments;
}

std::string PublishRig::Findings(TextView name) {
    std::string lines;
    for (const Finding& finding : VerifyPublishedFile(files, Path(name)).findings)
        lines += std::to_string(finding.offset) + ": " + finding.text + "\n";
    return lines;
}

std::string PublishRig::Findings(const Bytes& published) {
    WriteFileBytes(Path(u"received.wav"), published);
    return Findings(u"received.wav");
}

PublishJob PublishRig::Job() {
    return PublishJob({readers,
                       clock,
                       writers,
                       project,
                       progress,
                       patience,
                       {settings, choices, files, programFolder},
                       dialogs});
}

}  // namespace orma::test
