#include <gtest/gtest.h>

#include "audio/engine/engine_fixture.h"
#include "platform/simulated/simulated_recorder.h"

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
    EXPECT_EQ(attached.queryFormat, (WaveFormat{1, 48000, 96000, 2, 16}));

    attached.names = {u"MAYCOM a"};
    EXPECT_EQ(recorderControl.FindExternalRecorder(), 5);
    EXPECT_FALSE(recorderControl.IsPresent()) << "number 0 stands for none";

    attached.names = {u"Loudspeaker", u"MAYCO"};
    attached.queried.reset();
    EXPECT_EQ(recorderControl.FindExternalRecorder(), -1);
    EXPECT_FALSE(attached.queried);

    attached.names = {u"Loudspeaker", u"MAYCOM"};
    attached.result = WaveResult::kFailed;
    EXPECT_EQ(recorderControl.FindExternalRecorder(), -1);
    EXPECT_FALSE(recorderControl.IsPresent());
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ExternalRecorderTest, GetsItsCodesThroughTheLineThatIsOpen) {
    recorderControl.SetRecorderGain(2);  // remembered; nothing is open yet
    recorderControl.LineOpened(RecorderLine::kInput);
    EXPECT_TRUE(attached.sent.empty()) << "nobody was found";

    recorderControl.FindExternalRecorder();
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
    EXPECT_EQ(recorderControl.VolumeCode(), 123);
}

TEST_F(ExternalRecorderTest, ClampsItsCodesSendsThemAndShowsThemInDecibels) {
    SimulatedRecorder device({});
    ExternalRecorderControl simulated(&device, report);
    ASSERT_EQ(simulated.FindExternalRecorder(), 1 << 8 | 2);
    simulated.LineOpened(RecorderLine::kInput);
    struct Row {
        std::int32_t gainStep, volumeStep;
        std::uint32_t gainCode, volumeCode;
        Text gain, volume;
        std::uint32_t gainBar, volumeBar;
    };
    for (const Row& row : {Row{2000, 2000, 254, 127, u"+31dB", u"  +6dB", 65536, 65536},
                           Row{2, 1, 254, 127, u"+31dB", u"  +6dB", 65536, 65536},
                           Row{-62, -6, 192, 121, u"+0dB", u"  +0dB", 33792, 40960},
                           Row{-66, -10, 126, 111, u"-33dB", u"  -10dB", 0, 0},
                           Row{-2, -1, 126, 111, u"-33dB", u"  -10dB", 0, 0}}) {
        simulated.SetRecorderGain(row.gainStep);
        simulated.SetRecorderVolume(row.volumeStep);
        EXPECT_EQ(device.GainCode(), row.gainCode);
        EXPECT_EQ(device.VolumeCode(), row.volumeCode);
        EXPECT_EQ(simulated.GainText(), row.gain);
        EXPECT_EQ(simulated.VolumeText(), row.volume);
        EXPECT_EQ(simulated.GainBar(), row.gainBar);
        EXPECT_EQ(simulated.VolumeBar(), row.volumeBar);
    }
    simulated.Load({.gainCode = 255, .volumeCode = 3});
    EXPECT_EQ(simulated.GainCode(), 254);
    EXPECT_EQ(simulated.VolumeCode(), 111);
}

TEST_F(ExternalRecorderTest, ReportsAFailedMessageAndKeepsTheCode) {
    recorderControl.FindExternalRecorder();
    attached.result = WaveResult::kFailed;
    recorderControl.LineOpened(RecorderLine::kOutput);
    recorderControl.SetRecorderVolume(1);
    recorderControl.LineOpened(RecorderLine::kInput);
    recorderControl.SetRecorderGain(1);
    EXPECT_EQ(boxes.Texts(),
              (Texts{u"waveoutmessage", u"waveoutmessage", u"waveinmessage", u"waveinmessage"}));
    EXPECT_EQ(recorderControl.GainCode(), 201);
    EXPECT_EQ(recorderControl.VolumeCode(), 121);
    EXPECT_FALSE(recorderControl.QueryValue());
}

}  // namespace
}  // namespace orma::test
