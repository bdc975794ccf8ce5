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

    FakeExternalRecorder& driver = attached;
    ExternalRecorderControl& control = recorderControl;
};

TEST_F(ExternalRecorderTest, IsTheLastOutputOfItsNameThatAnswers) {
    driver.names = {u"MAYCOM a", u"maycom b", u"MAYCOM c", u"A MAYCOM"};
    EXPECT_EQ(control.FindExternalRecorder(), 2 << 8 | 5);
    EXPECT_TRUE(control.IsPresent());
    EXPECT_EQ(driver.queryFormat, (WaveFormat{1, 48000, 96000, 2, 16}));

    driver.names = {u"MAYCOM a"};
    EXPECT_EQ(control.FindExternalRecorder(), 5);
    EXPECT_FALSE(control.IsPresent()) << "number 0 stands for none";

    driver.names = {u"Loudspeaker", u"MAYCO"};
    driver.queried.reset();
    EXPECT_EQ(control.FindExternalRecorder(), -1);
    EXPECT_FALSE(driver.queried);

    driver.names = {u"Loudspeaker", u"MAYCOM"};
    driver.result = WaveResult::kFailed;
    EXPECT_EQ(control.FindExternalRecorder(), -1);
    EXPECT_FALSE(control.IsPresent());
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ExternalRecorderTest, GetsItsCodesThroughTheLineThatIsOpen) {
    control.SetRecorderGain(2);  // remembered; nothing is open yet
    control.LineOpened(RecorderLine::kInput);
    EXPECT_TRUE(driver.sent.empty()) << "nobody was found";

    control.FindExternalRecorder();
    control.LineOpened(RecorderLine::kOutput);
    control.SetRecorderGain(2);
    control.SetRecorderVolume(1);
    control.LineOpened(RecorderLine::kInput);
    control.SetRecorderGain(-2);
    control.SetRecorderVolume(1);
    EXPECT_EQ(control.QueryValue(), 0u);
    control.LineClosed(RecorderLine::kInput);
    control.LineClosed(RecorderLine::kOutput);
    control.SetRecorderVolume(1);
    EXPECT_EQ(driver.sent, (Strings{"53164 out 0 1 0 0 0 2 0 0 0 3", "53164 out 50 121 0 0 0",
                                    "53164 in 0 1 0 0 0 2 0 0 0 3", "53164 in 40 202 0 0 0",
                                    "53164 in 50 122 0 0 0", "53164 in 140 0 0 0 0"}));
    EXPECT_EQ(control.VolumeCode(), 123);
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
    control.FindExternalRecorder();
    driver.result = WaveResult::kFailed;
    control.LineOpened(RecorderLine::kOutput);
    control.SetRecorderVolume(1);
    control.LineOpened(RecorderLine::kInput);
    control.SetRecorderGain(1);
    EXPECT_EQ(boxes.Texts(),
              (Texts{u"waveoutmessage", u"waveoutmessage", u"waveinmessage", u"waveinmessage"}));
    EXPECT_EQ(control.GainCode(), 201);
    EXPECT_EQ(control.VolumeCode(), 121);
    EXPECT_FALSE(control.QueryValue());
}

}  // namespace
}  // namespace orma::test
