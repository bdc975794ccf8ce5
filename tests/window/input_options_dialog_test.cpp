#include "window/dialogs/input_options_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSlider>

#include <gtest/gtest.h>

#include "window/golden.h"

namespace orma::test {
namespace {

InputOptions Options() {
    InputOptions options;
    EqualizerSet set;
    set.on = 1;
    set.name = u"Street";
    set.bands[0] = {100, -120, 7, 1};
    set.bands[2] = {3000, 45, 10, 1};
    options.sets.push_back(set);
    options.set = 0;
    options.sampleRate = 44100;
    options.gainControl = true;
    options.gainDb = 12;
    options.liveFtpAllowed = true;
    return options;
}

TEST(InputOptionsDialog, ShowsWhatIsInUseAndTellsWhatWasChosen) {
    InputOptionsDialog dialog(Options(), nullptr);
    ExpectLooksAsItDid("input-options", dialog);
    EXPECT_EQ(dialog.Chosen().set, 0U);
    EXPECT_EQ(dialog.Chosen().gainDb, 12);

    dialog.findChild<QComboBox*>()->setCurrentIndex(0);
    dialog.findChild<QSlider*>()->setValue(20);
    dialog.findChild<QCheckBox*>()->click();
    const InputOptions chosen = dialog.Chosen();
    EXPECT_FALSE(chosen.set);
    EXPECT_EQ(chosen.gainDb, 20);
    EXPECT_TRUE(chosen.liveFtp);
}

TEST(InputOptionsDialog, HidesWhatCannotBeChosenAndKeepsIt) {
    InputOptions options = Options();
    options.gainControl = false;
    options.liveFtpAllowed = false;
    options.liveFtp = true;
    const InputOptionsDialog dialog(options, nullptr);
    EXPECT_EQ(dialog.findChild<QSlider*>(), nullptr);
    EXPECT_EQ(dialog.findChild<QCheckBox*>(), nullptr);
    EXPECT_EQ(dialog.Chosen().gainDb, 12);
    EXPECT_TRUE(dialog.Chosen().liveFtp);
}

}  // namespace
}  // namespace orma::test
