#include "remote_rig.h"

#include "stream/base64_encoder.h"

namespace orma::test {
RemoteRig::RemoteRig() {
    context.remote.ftp = &ftp;
    context.remote.mail = &mail;
    settings.FtpServer = u"srv";
    settings.SmtpServer = u"mx";
    settings.ImagePublishing = 0;
}

void RemoteRig::AddClips(bool mp2, std::uint32_t rate, unsigned channels) {
    audio.mp2 = mp2;
    audio.stereo = mp2 && channels == 2;
    if (audio.stereo) audio.bitrate.SetMp2Bitrate(7, files.report);
    const std::size_t period = (mp2 ? 48000 : rate) / 20;
    const auto first = Speech(60 * period + 701, mp2 ? 48000 : rate, channels);
    const auto second = Speech(50 * period, mp2 ? 48000 : rate, channels, 9000);
    LevelSheet sheet = mp2 ? AddMp2(u"talk00", first) : AddWav(u"talk00", first, rate, channels);
    sheet.cuts = {{20, 29, 0}};
    sheet.marks = {5, 40};
    AddLevels(u"talk00", sheet);
    if (mp2)
        AddMp2(u"talk01", second);
    else
        AddWav(u"talk01", second, rate, channels);
    AddClip(u"talk01", 10, 41);
    AddClip(u"talk00");
    project.SetProjectText(u"Harbour");
}

void RemoteRig::ExpectMails(int messages) {
    for (int i = 0; i < messages; ++i)
        for (const char* reply : {"220 here\r\n", "250 hello\r\n", "250 sender\r\n",
                                  "250 recipient\r\n", "354 go on\r\n", "250 taken\r\n", "221\r\n"})
            tcp.replies.emplace_back(reply);
}

std::vector<Bytes> RemoteRig::Attachments() const {
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

std::string RemoteRig::Findings(const Bytes& published) {
    WriteFileBytes(Path(u"received.wav"), published);
    return PublishRig::Findings(u"received.wav");
}

}  // namespace orma::test
