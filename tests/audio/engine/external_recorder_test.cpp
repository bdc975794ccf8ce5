#include "audio/engine/engine_fixture.h"

namespace orma::test {
namespace {

class ExternalRecorderTest : public RecorderTest {
  protected:
    ExternalRecorderTest() {
        recorderControl.Load({.gainCode = 200, .volumeCode = 120, .configuration = {1, 2, 3}});
    }
};

TEST_F(ExternalRecorderTest, IsTheLastOutputOfItsNameThatAnswers) {
    attached.names = {u"MAYCOM a", u"maycom b", u"MAYCOM c", u"A MAYCOM"};
    EXPECT_EQ(recorderControl.FindExternalRecorder(), 2 << 8 | 5);
    EXPECT_TRUE(recorderControl.IsPresent());
    EXPECT_EQ(attached.queriedOutput, 2U);
    EXPECT_EQ(attached.queryFormat, (WaveFormat{1, 48000, 96000, 2, 16}));

    attached.names = {u"MAYCOM a"};
    EXPECT_EQ(recorderControl.FindExternalRecorder(), 5);
    EXPECT_FALSE(recorderControl.IsPresent()) << "number 0 stands for none";
    attached.names = {u"Loudspeaker", u"MAYCO"};
    EXPECT_EQ(recorderControl.FindExternalRecorder(), -1);
    attached.names = {u"Loudspeaker", u"MAYCOM"};
    attached.result = WaveResult::kFailed;
    EXPECT_EQ(recorderControl.FindExternalRecorder(), -1);
    EXPECT_FALSE(recorderControl.IsPresent());
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ExternalRecorderTest, GetsItsCodesThroughTheLineThatIsOpen) {
    recorderControl.LineOpened(RecorderLine::kInput);
    EXPECT_TRUE(attached.sent.empty()) << "nobody was found";

    recorderControl.FindExternalRecorder();
    recorderControl.SetRecorderGain(2);  // remembered; nothing is open yet
    recorderControl.LineOpened(RecorderLine::kOutput);
    recorderControl.SetRecorderGain(2);
    recorderControl.SetRecorderVolume(1);
    recorderControl.LineOpened(RecorderLine::kInput);
    recorderControl.SetRecorderGain(-2);
    recorderControl.SetRecorderVolume(1);
    EXPECT_EQ(recorderControl.QueryValue(), 0u);
    recorderControl.LineClosed(RecorderLine::kInput);
    recorderControl.LineClosed(RecorderLine::kOutput);
    recorderControl.SetRecorderVolume(1);
    EXPECT_EQ(attached.sent, (Strings{"53164 out 0 1 0 0 0 2 0 0 0 3", "53164 out 50 121 0 0 0",
                                      "53164 in 0 1 0 0 0 2 0 0 0 3", "53164 in 40 202 0 0 0",
                                      "53164 in 50 122 0 0 0", "53164 in 140 0 0 0 0"}));
    EXPECT_TRUE(boxes.shown.empty());
    attached.result = WaveResult::kFailed;
    recorderControl.LineOpened(RecorderLine::kOutput);
    recorderControl.LineOpened(RecorderLine::kInput);
    EXPECT_EQ(boxes.Texts(), (Texts{u"waveoutmessage", u"waveinmessage"}));
    EXPECT_EQ(recorderControl.VolumeCode(), 123);
    EXPECT_FALSE(recorderControl.QueryValue());
}

TEST_F(ExternalRecorderTest, ClampsItsCodesAndShowsThemInDecibels) {
    const struct {
        std::int32_t gainStep, volumeStep;
        int gainCode, volumeCode;
        Text gain, volume;
        std::uint32_t gainBar, volumeBar;
    } rows[] = {{2000, 2000, 254, 127, u"+31dB", u"  +6dB", 65536, 65536},
                {-62, -6, 192, 121, u"+0dB", u"  +0dB", 33792, 40960},
                {-2000, -2000, 126, 111, u"-33dB", u"  -10dB", 0, 0}};
    for (const auto& row : rows) {
        recorderControl.SetRecorderGain(row.gainStep);
        recorderControl.SetRecorderVolume(row.volumeStep);
        EXPECT_EQ(recorderControl.GainCode(), row.gainCode);
        EXPECT_EQ(recorderControl.VolumeCode(), row.volumeCode);
        EXPECT_EQ(recorderControl.GainText(), row.gain);
        EXPECT_EQ(recorderControl.VolumeText(), row.volume);
        EXPECT_EQ(recorderControl.GainBar(), row.gainBar);
        EXPECT_EQ(recorderControl.VolumeBar(), row.volumeBar);
    }
    recorderControl.Load({.gainCode = 255, .volumeCode = 3});
    EXPECT_EQ(recorderControl.GainCode(), 254);
    EXPECT_EQ(recorderControl.VolumeCode(), 111);
}

}  // namespace
}  // namespace orma::test
