#include "ui/skin/skin.h"

#include <map>

#include <gtest/gtest.h>

#include "base/path.h"
#include "support/bitmap_bytes.h"
#include "support/memory_storage.h"
#include "ui/support/picture_pixels.h"

namespace orma {
namespace {

/// Carries what a test gives it, and counts what is asked of it.
class FakeBitmaps : public BuiltInBitmaps {
  public:
    std::vector<std::uint8_t> File(int number, bool doubled) override {
        ++asked;
        const auto found = files.find({number, doubled});
        return found == files.end() ? Bytes() : found->second;
    }
    std::map<std::pair<int, bool>, Bytes> files;
    int asked = 0;
};

class SkinTest : public testing::Test {
  protected:
    SkinTest() { builtIn_.files[{503, false}] = test::GreyBitmap(3, 2); }

    [[nodiscard]] Skin Make(Size client, bool upsideDown = false) {
        return {storage_, builtIn_, u"/opt/orma/", client, upsideDown};
    }
    void Put(const Text& name, ByteSpan bytes) {
        storage_.Put(AsFolder(u"/opt/orma/Portrait") + name, bytes);
    }

    test::MemoryStorage storage_;
    FakeBitmaps builtIn_;
};

TEST_F(SkinTest, TheShapeOfTheWindowChoosesTheFolder) {
    const std::pair<Size, Text> cases[] = {
        {{240, 270}, AsFolder(u"/opt/orma/Portrait")},
        {{270, 270}, u"/opt/orma/"},
        {{271, 270}, AsFolder(u"/opt/orma/Square")},
        {{480, 320}, AsFolder(u"/opt/orma/Square")},
        {{481, 320}, AsFolder(u"/opt/orma/Landscape")},
        {{480, 0}, AsFolder(u"/opt/orma/Landscape")},
    };
    for (const auto& [client, folder] : cases)
        EXPECT_EQ(SkinFolder(u"/opt/orma/", client), folder) << client.width;
}

TEST_F(SkinTest, OneScaleFitsTheScreenIntoEveryWindow) {
    const struct {
        Size client;
        float scale;
        Size page;
        Rect record;  // 156, 191, 65, 65 at scale 1
    } cases[] = {
        {{240, 270}, 1.0F, {240, 270}, {156, 191, 65, 65}},
        {{480, 540}, 2.0F, {480, 540}, {312, 382, 130, 130}},
        {{360, 500}, 1.5F, {360, 405}, {234, 286, 97, 97}},  // lower than the window
        {{400, 405}, 1.5F, {360, 405}, {234, 286, 97, 97}},  // narrower
        {{800, 480}, 480 / 270.0F, {426, 480}, {277, 339, 115, 115}},
        {{180, 270}, 0.75F, {180, 202}, {117, 143, 48, 48}},
        {{0, 0}, 0.0F, {0, 0}, {0, 0, 0, 0}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.client.width);
        const Skin skin = Make(one.client);
        EXPECT_EQ(skin.Scale(), one.scale);
        EXPECT_EQ(skin.Page(), one.page);
        EXPECT_EQ(skin.RectOf(Element::Record), one.record);
    }
    EXPECT_EQ(Make({360, 500}).FontOf(SkinFont::kTime, true),
              (Font{37, FontWeight::kSemiBold, true}));
}

TEST_F(SkinTest, AFolderMovesAndColoursOnlyWhatItNames) {
    Put(u"pos.txt", AsBytes("[Record]\r\nx=-7\r\n\r\n[NoSuch]\ny=1\n[MainWindow]\nw=120\nh=135\n"));
    Put(u"Colors.txt", AsBytes("[TextColor]\ng=256\nb=-1\n[WaveformCutColor]\nr=7\n"));
    const Skin skin = Make({240, 270});
    EXPECT_EQ(skin.Scale(), 2.0F);
    EXPECT_EQ(skin.RectOf(Element::Record), (Rect{-14, 382, 130, 130}));
    EXPECT_EQ(skin.RectOf(Element::ProgressText), (Rect{40, 84, 392, 40}));
    EXPECT_EQ(skin.Colours().text, (Colour{49, 0, 255})) << "modulo 256";
    EXPECT_EQ(skin.Colours().waveformCut, (Colour{7, 255, 0}));
    EXPECT_EQ(skin.Colours().textBackground, (Colour{99, 255, 255}));
}

TEST_F(SkinTest, UpsideDownTurnsTheRecorderAlone) {
    const Skin skin = Make({480, 540}, true);
    EXPECT_EQ(skin.Design(Element::Record), (ElementRect{19, 14, 65, 65}));
    EXPECT_EQ(skin.RectOf(Element::GainKnob), (Rect{2 * 169, 2 * 144, 40, 40}));
    const Layout upright;
    int turned = 0;
    for (std::size_t i = 0; i < kElementCount; ++i) {
        const auto element = static_cast<Element>(i);
        const ElementRect& was = upright[element];
        const ElementRect& is = skin.Design(element);
        if (is == was) continue;
        ++turned;
        EXPECT_EQ(is, (ElementRect{240 - was.w - was.x, 270 - was.h - was.y, was.w, was.h}))
            << ElementName(element);
    }
    EXPECT_EQ(turned, 22);
    for (const Element element : {Element::CFACGainKnobMiddle, Element::CFACVolKnobMiddle,
                                  Element::GainKnobMiddle, Element::EditRecord, Element::CWindow})
        EXPECT_EQ(skin.Design(element), upright[element]) << ElementName(element);
}

TEST_F(SkinTest, AnAbsurdLayoutIsShownSomehow) {
    Put(u"pos.txt", AsBytes("[MainWindow]\nw=0\nh=-3\n[Record]\nx=-2147483648\ny=2147483647\n"
                            "w=2147483647\nh=-2147483648\n"));
    const Skin skin = Make({480, 540}, true);
    EXPECT_EQ(skin.Scale(), 2.0F);
    const Rect rect = skin.RectOf(Element::Record);
    EXPECT_LT(std::abs(rect.Right()), 1 << 22);
    EXPECT_LT(std::abs(rect.Bottom()), 1 << 22);
}

TEST_F(SkinTest, ABitmapIsDecodedOnceWhenItIsAskedFor) {
    Skin skin = Make({240, 270});
    EXPECT_EQ(builtIn_.asked, 0);
    EXPECT_EQ(test::PixelsOf(skin.Bitmap(503)),
              (std::vector<Pixel>{0, 0x010101, 0x020202, 0x101010, 0x111111, 0x121212}));
    EXPECT_EQ(&skin.Bitmap(503), &skin.Bitmap(503));
    EXPECT_EQ(builtIn_.asked, 1);
    for (const int missing : {504, 489, 525})
        EXPECT_TRUE(skin.Bitmap(missing).IsEmpty());
}

TEST_F(SkinTest, TheRecordersBitmapsAreTurnedUpsideDown) {
    Skin skin = Make({240, 270}, true);
    EXPECT_EQ(test::PixelsOf(skin.Bitmap(skin.ForRecorder(503))),
              (std::vector<Pixel>{0x121212, 0x111111, 0x101010, 0x020202, 0x010101, 0}));
    EXPECT_EQ(test::PixelsOf(skin.Bitmap(503))[0], 0U) << "the other screens' stay";
    for (const int missing : {504, 525})
        EXPECT_TRUE(skin.Bitmap(skin.ForRecorder(missing)).IsEmpty());
    EXPECT_EQ(Make({240, 270}).ForRecorder(503), 503);
}

TEST_F(SkinTest, AFileOfTheFolderCountsBeforeTheBuiltInOneEvenIfItIsDamaged) {
    builtIn_.files[{504, false}] = test::GreyBitmap(3, 2);
    Put(u"503.bmp", test::GreyBitmap(1, 1, 9));
    Put(u"504.bmp", AsBytes("BM, as it were"));
    Skin skin = Make({240, 270});
    EXPECT_EQ(test::PixelsOf(skin.Bitmap(503)), std::vector<Pixel>{0x090909});
    EXPECT_TRUE(skin.Bitmap(504).IsEmpty());
}

TEST_F(SkinTest, ABitmapIsStretchedByCopyingItsNearestPixels) {
    Skin larger = Make({360, 405});
    EXPECT_EQ(larger.Bitmap(503).width, 4);  // 4.5
    EXPECT_EQ(test::PixelsOf(larger.Bitmap(503)),
              (std::vector<Pixel>{0, 0, 0x010101, 0x020202,  //
                                  0, 0, 0x010101, 0x020202,  //
                                  0x101010, 0x101010, 0x111111, 0x121212}));
    Skin smaller = Make({120, 135});
    EXPECT_EQ(test::PixelsOf(smaller.Bitmap(503)), std::vector<Pixel>{0});
    builtIn_.files[{503, false}] = test::GreyBitmap(1, 1);
    EXPECT_TRUE(Make({120, 135}).Bitmap(503).IsEmpty());

    // Of a screen of 1 x 1 design pixels, 240 x 270 would become 65 gigabytes.
    Put(u"pos.txt", AsBytes("[MainWindow]\nw=1\nh=1\n"));
    builtIn_.files[{503, false}] = test::GreyBitmap(240, 270);
    EXPECT_TRUE(Make({480, 540}).Bitmap(503).IsEmpty());
}

TEST_F(SkinTest, AtTwiceTheSizeADoubledDrawingTakesThePlaceOfAStretchedOne) {
    const auto first = [&](Size client) { return test::PixelsOf(Make(client).Bitmap(503)).at(0); };
    const Bytes doubled = test::GreyBitmap(6, 4, 50);
    builtIn_.files[{503, true}] = doubled;
    EXPECT_EQ(first({480, 540}), 0x323232U);
    EXPECT_EQ(first({240, 270}), 0U);
    EXPECT_EQ(first({479, 540}), 0U);
    builtIn_.files[{503, true}] = test::GreyBitmap(6, 5, 50);
    EXPECT_EQ(first({480, 540}), 0U) << "another size";

    // A folder's bitmap is never mixed with the built-in drawing.
    builtIn_.files[{503, true}] = doubled;
    Put(u"503.bmp", test::GreyBitmap(3, 2, 7));
    EXPECT_EQ(first({480, 540}), 0x070707U);
    Put(u"503@2x.bmp", test::GreyBitmap(6, 4, 60));
    EXPECT_EQ(first({480, 540}), 0x3C3C3CU);
}

}  // namespace
}  // namespace orma
