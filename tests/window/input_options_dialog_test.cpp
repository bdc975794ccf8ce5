#include "window/dialogs/input_options_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QPushButton>
#include <QSlider>

#include <gtest/gtest.h>

#include "window/dialogs/equalizer_view.h"

namespace orma::test {
namespace {

/// Two sets, the second in use: a boost and a cut at 1 kHz.
InputOptions Options() {
    InputOptions options;
    for (const std::int16_t gain : {std::int16_t{90}, std::int16_t{-90}}) {
        EqualizerSet set;
        set.on = 1;
        set.name = gain > 0 ? u"more" : u"less";
        set.bands[1] = {1000, gain, 10, 1};
        options.sets.push_back(set);
    }
    options.set = 1;
    options.sampleRate = 44100;
    options.gainControl = true;
    options.gainDb = 7;
    options.liveFtpAllowed = true;
    return options;
}

/// The middle of the curve above the whole picture, in its colour; -1 without one.
int CurveRow(const QWidget& view) {
    const QImage image = const_cast<QWidget&>(view).grab().toImage();
    const int x = image.width() * 57 / 100;  // close to 1 kHz
    int sum = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const QColor colour = image.pixelColor(x, y);
        if (colour.red() < 200 || colour.blue() > 100) continue;
        sum += y;
        ++count;
    }
    return count > 0 ? sum / count : -1;
}

TEST(InputOptionsDialog, ShowsWhatIsInUseAndTellsWhatWasChosen) {
    InputOptionsDialog dialog(Options(), nullptr);
    auto& sets = *dialog.findChild<QComboBox*>();
    ASSERT_EQ(sets.count(), 3);
    EXPECT_EQ(sets.itemText(0), "(Off)");
    EXPECT_EQ(sets.currentText(), "less");
    EXPECT_EQ(dialog.Chosen().set, 1U);
    EXPECT_EQ(dialog.Chosen().gainDb, 7);

    sets.setCurrentIndex(0);
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
    EXPECT_EQ(dialog.Chosen().gainDb, 7);
    EXPECT_TRUE(dialog.Chosen().liveFtp);
}

TEST(InputOptionsDialog, DrawsABoostAboveACut) {
    EqualizerView view(44100);
    view.resize(400, 200);
    view.Show(Options().sets[0]);
    const int boost = CurveRow(view);
    EXPECT_TRUE(view.accessibleName().contains("9.0 dB at 1000 Hz"));
    view.Show(Options().sets[1]);
    const int cut = CurveRow(view);
    EXPECT_GT(boost, 0);
    EXPECT_GT(cut, boost + 60);
}

}  // namespace
}  // namespace orma::test
