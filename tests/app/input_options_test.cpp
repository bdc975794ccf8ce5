#include "app/input_options.h"

#include <gtest/gtest.h>

#include "app/desk.h"

namespace orma::test {
namespace {

TEST(InputOptions, OfferWhatIsInUseAndBringTheChoiceIntoUse) {
    Desk desk;
    desk.Configure([](SettingsRecord& settings) {
        settings.Preset[0] = {.bands = {}, .on = 1, .name = u"wind", .gainOffset = 6};
        settings.Preset[1] = {.bands = {}, .on = 1, .name = u"studio", .gainOffset = 6};
        settings.Preset[3].name = u"behind a gap";
        settings.CurrentPresetName = u"wind";
        settings.InputOptions = 1;
        settings.LiveFtpAllowed = 1;
    });
    const auto app = desk.Start();
    app->input.SetInputGain(4);
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
    EXPECT_EQ(desk.Start()->settings.InputGain, 14);

    options.set.reset();
    EXPECT_TRUE(ApplyInputOptions(*app, options));
    EXPECT_FALSE(app->input.EqualizerOn());
    EXPECT_EQ(app->input.GainFactor(), 1283);  // 14 dB, no offset
    EXPECT_EQ(app->settings.CurrentPresetName, u"");
    EXPECT_FALSE(InputOptionsOf(*app).set);
}

}  // namespace
}  // namespace orma::test
