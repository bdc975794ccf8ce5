#include "ui/skin/layout.h"

#include <gtest/gtest.h>

#include "support/test_files.h"
#include "ui/skin/colours.h"

namespace orma {
namespace {

TEST(LayoutTest, ASkinMovesOnlyWhatItNames) {
    test::TestFiles files;
    const Text path = files.folder.Path(u"pos.txt");
    constexpr std::string_view kText = "[Record]\r\nx=-3\r\nw=70\r\n\r\n[NoSuch]\r\ny=1\r\n";
    test::WriteFileBytes(path, AsBytes(kText));

    Layout layout;
    layout.Read(files.storage, path);
    layout.Read(files.storage, files.folder.Path(u"missing.txt"));

    EXPECT_EQ(layout[Element::Record], (ElementRect{-3, 191, 70, 65}));
    const Layout untouched;
    for (std::size_t i = 0; i < kElementCount; ++i) {
        const auto element = static_cast<Element>(i);
        if (element == Element::Record) continue;
        EXPECT_EQ(layout[element], untouched[element]) << ElementName(element);
    }
    EXPECT_EQ(untouched[Element::ProgressText], (ElementRect{20, 42, 196, 20}));
}

TEST(SkinColoursTest, ASkinChangesOnlyThePartsItNamesModulo256) {
    test::TestFiles files;
    const Text path = files.folder.Path(u"Colors.txt");
    constexpr std::string_view kText = "[TextColor]\ng=256\nb=-1\n[WaveformCutColor]\nr=7\n";
    test::WriteFileBytes(path, AsBytes(kText));

    SkinColours colours;
    colours.Read(files.storage, path);

    EXPECT_EQ(colours.text, (Colour{49, 0, 255}));
    EXPECT_EQ(colours.waveformCut, (Colour{7, 255, 0}));
    EXPECT_EQ(colours.textBackground, (Colour{99, 255, 255}));
}

}  // namespace
}  // namespace orma
