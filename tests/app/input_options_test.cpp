#include "app/input_options.h"

#include <gtest/gtest.h>

#include "app/desk.h"
#include "app/options.h"

namespace orma::test {
namespace {

/// Two sets, the first in use, and a project that may record straight to FTP.
struct InputOptionsTest : testing::Test {
    InputOptionsTest() : app(desk.Start()) {
        SettingsRecord& settings = app->settings;
        for (std::size_t i = 0; i < 2; ++i) {
            settings.Preset[i].name = i == 0 ? u"wind" : u"studio";
            settings.Preset[i].on = 1;
            settings.Preset[i].gainOffset = 6;
        }
        settings.Preset[3].name = u"behind a gap";
        settings.CurrentPresetName = u"wind";
        settings.InputOptions = 1;
        settings.LiveFtpAllowed = 1;
        settings.InputGain = 4;
        app->input.Load(InputSettingsOf(settings), app->audio.sampleRate);
        app->project.SetOptions(ProjectOptionsOf(settings));
    }

    Desk desk;
    std::unique_ptr<Application> app;
};

TEST_F(InputOptionsTest, OfferWhatIsInUseAndBringTheChoiceIntoUse) {
    InputOptions options = InputOptionsOf(*app);
    ASSERT_EQ(options.sets.size(), 2U);
    EXPECT_EQ(options.set, 0U);
    EXPECT_EQ(options.gainDb, 4);
    EXPECT_FALSE(options.liveFtp);
    EXPECT_EQ(app->input.GainFactor(), 809);  // 10 dB

    options.set = 1;
    options.gainDb = 14;
    options.liveFtp = true;
    EXPECT_TRUE(ApplyInputOptions(*app, options));
    EXPECT_EQ(app->input.CurrentSetName(), u"studio");
    EXPECT_EQ(app->input.GainFactor(), 2560);  // 20 dB
    EXPECT_TRUE(app->project.LiveFtp());

    // Where the program starts again they are in use.
    auto again = desk.Start();
    EXPECT_EQ(again->settings.InputGain, 14);

    options.set.reset();
    EXPECT_TRUE(ApplyInputOptions(*app, options));
    EXPECT_FALSE(app->input.EqualizerOn());
    EXPECT_EQ(app->input.GainFactor(), 1283);  // 14 dB, no offset
    EXPECT_EQ(app->settings.CurrentPresetName, u"");
    EXPECT_FALSE(InputOptionsOf(*app).set);
}

}  // namespace
}  // namespace orma::test
