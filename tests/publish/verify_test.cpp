#include "publish/verify.h"

#include <functional>

#include <gmock/gmock.h>

#include "audio/files/bwf_chunks.h"
#include "publish_rig.h"

namespace orma::test {
namespace {

using testing::HasSubstr;

struct VerifyTest : PublishTest {
    /// Publishes two clips with marks, as PCM of one channel or as MP2.
    void Publish(bool mp2, unsigned channels = 1) {
        SetFormat(mp2, channels);
        const std::uint32_t rate = mp2 ? 48000 : 44100;
        LevelSheet sheet = AddTake(u"talk00", Speech(6 * rate, rate, channels));
        sheet.marks = {20, 70};
        AddLevels(u"talk00", sheet);
        AddClip(u"talk00", 0, 0, u"Intro");
        AddClip(u"talk00", 30, 60);
        ASSERT_EQ(Job().MenuPublishCliplistToFile(false), PublishOutcome::kPublished);
        good_ = File(u"pub_talk.wav");

        at_.format = 20 + LoadLe<std::uint32_t>(&good_[16]);
        at_.data = at_.format + (mp2 ? 88 : 44);
        at_.levl = at_.data + LoadLe<std::uint32_t>(&good_[at_.data - 4]);
        at_.qlty = at_.levl + 8 + LoadLe<std::uint32_t>(&good_[at_.levl + 4]);
        ASSERT_TRUE(IsTag(&good_[at_.qlty], "qlty"));
    }

    /// Expects a finding that holds `text`, at `offset`, once `change` was made to the good file.
    void ExpectFound(const char* text, std::size_t offset,
                     const std::function<void(Bytes&)>& change) {
        Bytes file = good_;
        change(file);
        ASSERT_NE(file, good_);
        EXPECT_THAT("\n" + Findings(file),
                    testing::ContainsRegex(Format("\n%zu: [^\n]*%s", offset, text)));
    }

    /// The same for one byte that is replaced where the finding is expected, or `behind` it.
    void ExpectByteFound(const char* text, std::size_t offset, std::uint8_t byte,
                         std::size_t behind = 0) {
        ExpectFound(text, offset, [&](Bytes& file) { file[offset + behind] = byte; });
    }

    Bytes good_;
    // Offsets of what a mutation aims at; the history of both files below is known.
    struct {
        std::size_t format;  // of the `fmt ` head
        std::size_t data;    // of the first data byte
        std::size_t levl;    // of the chunk's head
        std::size_t qlty;
    } at_{};
};

TEST_F(VerifyTest, FindsWrongFrames) {
    Publish(false);
    EXPECT_EQ(Findings(good_), "");
    ExpectByteFound("RIFF size is", 4, static_cast<std::uint8_t>(good_[4] + 1));
    ExpectByteFound("no 'RIFF'", 0, 'X');
    ExpectByteFound("no 'WAVE'", 8, 'w');
    ExpectFound("stray bytes", good_.size(), [](Bytes& file) { file.push_back(0); });
    ExpectFound("reaches beyond the end", at_.qlty + 4, [](Bytes& file) { file.pop_back(); });
    ExpectByteFound("chunks are", 12, 'L', at_.levl - 12);
    ExpectFound("chunks are", 12, [&](Bytes& file) { file.resize(at_.qlty); });
    ExpectFound("chunks are", 12, [&](Bytes& file) {
        const auto levl = file.begin() + static_cast<std::ptrdiff_t>(at_.levl);
        std::rotate(levl, file.begin() + static_cast<std::ptrdiff_t>(at_.qlty), file.end());
    });
}

TEST_F(VerifyTest, FindsWrongFieldsOfBext) {
    Publish(false);
    ExpectByteFound("originator is not", 276, 'p');
    ExpectByteFound("originator reference", 308, 'o');
    ExpectByteFound("description has no end", 20, 'x', 255);
    ExpectByteFound("origination date", 340, '3', 5);  // month 31
    ExpectByteFound("origination time", 350, '7', 3);  // minute 77
    ExpectByteFound("time reference is", 358, 0, 2);
    ExpectByteFound("beyond a day", 362, 1);
    ExpectByteFound("version", 366, 2);
    ExpectByteFound("UMID label byte 3", 371, 0);
    ExpectByteFound("material type", 378, 9);
    ExpectByteFound("extended", 380, 0x13);
    ExpectByteFound("UMID time differs", 384, 0);
    ExpectByteFound("UMID day is", 388, 0x37);
    ExpectByteFound("UMID byte 23", 391, 0);
    ExpectByteFound("UMID bytes 26", 394, 1, 20);
    ExpectByteFound("reserved bytes not zero", 432, 1, 100);
    ExpectByteFound("does not describe", 622, 'M', 8);
    ExpectFound("coding history has no end", 622, [&](Bytes& file) {
        std::fill(file.begin() + 622, file.begin() + static_cast<std::ptrdiff_t>(at_.format), 'x');
    });
}

TEST_F(VerifyTest, FindsWrongFieldsOfPcm) {
    Publish(false);
    const std::size_t fields = at_.format + 8;
    ExpectByteFound("neither PCM nor MPEG", fields, 3);
    ExpectByteFound("0 channels", fields + 2, 0);
    ExpectByteFound("sample rate is", fields + 4, 0x44);
    ExpectByteFound("bytes a second is", fields + 8, 1);
    ExpectByteFound("block align is", fields + 12, 5);
    ExpectByteFound("bits per sample is", fields + 14, 24);
    ExpectByteFound("sample count is", at_.format + 32, 1);
}

TEST_F(VerifyTest, FindsWrongFieldsAndFramesOfMpeg) {
    Publish(true);
    EXPECT_EQ(Findings(good_), "");
    const std::size_t fields = at_.format + 8;
    ExpectByteFound("bytes a second", fields + 8, 1);
    ExpectByteFound("block align", fields + 12, 1);
    ExpectByteFound("layer is", fields + 18, 3);
    ExpectByteFound("bit rate is", fields + 20, 1);
    ExpectByteFound("mode is", fields + 24, 1);
    ExpectByteFound("flags is", fields + 30, 0);
    ExpectByteFound("sample count is", at_.format + 56, 0);
    ExpectByteFound("frame size is", at_.format + 70, 1);
    ExpectByteFound("frame 3: header FF FD 54", at_.data + 3 * 192, 0x54, 2);  // bit rate
    ExpectByteFound("frame 0: header FF FD 44 04", at_.data, 0x04, 3);         // stereo
    ExpectByteFound("frame 5: header FE", at_.data + 5 * 192, 0xFE);           // sync
    // Nothing else tells a changed sound byte from a good one.
    ExpectByteFound("FileSecurityWave is", at_.qlty + 12, 0xA5,
                    at_.data + 960 + 100 - at_.qlty - 12);
}

TEST_F(VerifyTest, FindsWrongLevels) {
    for (const auto& [mp2, channels] : {std::pair{false, 1U}, {true, 1U}, {true, 2U}}) {
        Publish(mp2, channels);
        const std::size_t peaks = at_.levl + 128;
        ExpectByteFound("no peak envelope", at_.levl, 2, 12);
        ExpectByteFound("'levl' version", at_.levl + 8, 2);
        ExpectByteFound("block size is", at_.levl + 20, 0);
        ExpectByteFound("peak channels", at_.levl + 24, 2);
        ExpectByteFound("position of the peak", at_.levl + 32, 1);
        ExpectByteFound("time stamp differs", at_.levl + 40, '1', 10);
        ExpectByteFound("reserved bytes of 'levl'", at_.levl + 68, 1, 30);
        ExpectByteFound("bytes behind the peaks", peaks + 150, 1);
        ExpectFound("'levl' covers", at_.levl + 28,
                    [&](Bytes& file) { StoreLe(&file[at_.levl + 28], std::uint32_t{100}); });
        // The sound is loudest at 0.3 s, period 6, and faint at 0.6 s, period 12.
        ExpectByteFound("value 6 of 'levl' is 40", peaks + 6, 40);
        // Of two channels of frames one value may be too large: a cut may have taken the frame
        // that it came from. Of one channel all may be, for it may be the mix of two.
        if (!mp2) ExpectByteFound("value 12 of 'levl' is 90", peaks + 12, 90);
        const auto raise = [&](Bytes& file) {
            for (const std::size_t faint : {0, 12, 24, 36, 47, 59})
                file[peaks + faint] = 150;
        };
        if (channels == 2 || !mp2) {
            ExpectFound("value 12 of 'levl' is 150", peaks + 12, raise);
        } else {
            Bytes file = good_;
            raise(file);
            EXPECT_EQ(Findings(file), "");
            EXPECT_THAT(VerifyPublishedFile(files, Path(u"received.wav")).facts,
                        testing::Contains(HasSubstr("6 of 150 values are larger, as mixing")));
        }
        ExpectFound("value 0 of 'levl' is 0", peaks, [&](Bytes& file) {
            std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(peaks), 150, std::uint8_t{0});
        });
        clips.Clear();
    }
}

TEST_F(VerifyTest, FindsWrongQualityReports) {
    Publish(false);
    const std::size_t text = at_.qlty + 16;
    const std::string lines(good_.begin() + static_cast<std::ptrdiff_t>(text), good_.end());
    const auto line = [&](const char* begins) { return text + lines.find(begins); };
    ExpectByteFound("FileSecurityReport is", at_.qlty + 8, 1);
    ExpectByteFound("FileSecurityReport is", at_.qlty + 8, 'X', 8 + 20);
    ExpectByteFound("FileSecurityWave is", at_.qlty + 12, 1);
    ExpectByteFound("FileSecurityWave is", at_.qlty + 12, 1, at_.data + 5000 - at_.qlty - 12);
    ExpectByteFound("begin with 'SM='", text, 'T');
    ExpectByteFound("peak line should be", line("P=QP"), '7', 14);
    ExpectByteFound("no cue line", line("C=N001"), 'D');
    ExpectByteFound("should be number 1", line("C=N001"), '7', 5);
    ExpectByteFound("before the one above", line("C=N002"), '0', 18);
    ExpectByteFound("last cue line is not 'End'", line("C=N003"), 'e',
                    lines.find("End") - lines.find("C=N003"));
    ExpectByteFound("'End' is at", line("C=N003"), '9', 18);
    ExpectFound("bytes behind the report", text + lines.find('\0'),
                [](Bytes& file) { file.back() = 1; });
}

TEST_F(VerifyTest, SaysSomethingAboutEveryBrokenFile) {
    Publish(true);
    EXPECT_NE(Findings(u"none.wav"), "");
    EXPECT_TRUE(boxes.shown.empty()) << "verifying shows no boxes";
    for (std::size_t length = 0; length < good_.size(); length += 1 + length / 7)
        EXPECT_NE(Findings(Bytes(good_.begin(), good_.begin() + long(length))), "") << length;
}

}  // namespace
}  // namespace orma::test
