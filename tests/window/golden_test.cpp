// Every screen in its states, as pictures: what the eye would notice fails here.

#include "window/golden.h"

#include <gtest/gtest.h>

#include "project/clip_operations.h"
#include "window/stage.h"

namespace orma::test {
namespace {

/// The windows that are looked at; each one's pictures lie in a folder of its name.
struct Shape {
    const char* name;
    Size client;
};

constexpr Shape kShapes[] = {
    {"portrait", {240, 270}},
    {"portrait2x", {480, 540}},
    {"landscape", {320, 190}},
    {"square", {240, 190}},
};

void OpenEditor(Stage& stage) {
    stage.RecordTake();
    stage.Run(Command::kEditor);
    stage.Go(0);
}

/// Adds a cut, of a second or empty; playing has left the one before.
void Cut(Stage& stage, std::int32_t place, bool aSecond) {
    stage.Go(place);
    stage.Click(Element::EditPlay);
    stage.Click(Element::EditStop);
    stage.Go(place);
    stage.app.settings.OneSecondCut = aSecond ? 1 : 0;
    stage.Run(Command::kCutBegin);
}

/// A picture and what leads to it.
struct Shot {
    const char* name;
    void (*play)(Stage& stage);
};

constexpr Shot kShots[] = {
    {"recorder-stopped", [](Stage& stage) { stage.RecordTake(); }},
    {"recorder-ready",
     [](Stage& stage) {
         stage.Click(Element::Record);
         stage.Speak(8);
     }},
    {"recorder-recording",
     [](Stage& stage) {
         stage.Click(Element::Record);
         stage.Click(Element::Play);
         stage.Speak(100);
         stage.Click(Element::Record);
         stage.Speak(8);
     }},
    {"recorder-overload",
     [](Stage& stage) {
         stage.Click(Element::Record);
         stage.Click(Element::Play);
         stage.Speak(50);
         stage.Deliver(32767);
         stage.Speak(12);
     }},
    {"recorder-playing",
     [](Stage& stage) {
         stage.RecordTake();
         stage.Go(200);
         stage.Click(Element::Play);
         stage.Hear(60);
     }},
    {"editor-marks",
     [](Stage& stage) {
         OpenEditor(stage);
         stage.shell.OnKeyDown(Key::kMinus);
         stage.shell.OnKeyDown(Key::kMinus);
         stage.Go(370);
     }},
    {"editor-cut",
     [](Stage& stage) {
         OpenEditor(stage);
         Cut(stage, 15, true);
         Cut(stage, 60, true);
         Cut(stage, 110, false);
         stage.Go(80);  // the end of the second one
     }},
    {"editor-selection",
     [](Stage& stage) {
         OpenEditor(stage);
         stage.Go(30);
         stage.Run(Command::kCropBegin);
         stage.Go(130);
         stage.Run(Command::kCropEnd);
         stage.Go(80);
     }},
    {"editor-zoomed",
     [](Stage& stage) {
         OpenEditor(stage);
         stage.Go(105);
         stage.shell.OnKeyDown(Key::kPlus);
         stage.shell.OnKeyDown(Key::kPlus);
     }},
    {"clips",
     [](Stage& stage) {
         stage.RecordTake();
         for (const auto& [end, title] : {std::pair{280, u"Statement"}, {110, u"Question"}}) {
             stage.app.recording.selectionEnd = static_cast<std::uint32_t>(end);
             EXPECT_TRUE(CopyToClipEditor(stage.app.project, title));
         }
         stage.DateRecordings();
         stage.Run(Command::kClipEditor);
     }},
    {"about-device", [](Stage& stage) { stage.Run(Command::kAbout); }},
    {"about-project",
     [](Stage& stage) {
         stage.Run(Command::kAbout);
         stage.Click(Element::AboutProject);
     }},
    {"progress",
     [](Stage& stage) {
         stage.shell.SelectScreen(ScreenIndex::kProgress);
         stage.Progress().SetText(u"  Publishing audio...  ");
         stage.Progress().SetRange(5);
         stage.Progress().Step(3);
         for (std::uint64_t sent = 0; sent <= 7'400'000; sent += 740'000) {
             stage.Pass(1000);
             stage.Progress().SetBytes(sent, 12'340'000);
             EXPECT_FALSE(stage.Progress().IsCancelled());
         }
     }},
};

class GoldenTest : public ::testing::TestWithParam<Shape> {};

TEST_P(GoldenTest, EveryScreenLooksAsItDid) {
    for (const Shot& shot : kShots) {
        SCOPED_TRACE(shot.name);
        Stage stage(GetParam().client);
        shot.play(stage);
        const QImage shown = stage.Frame();
        ExpectLooksAsItDid(std::string(GetParam().name) + "/" + shot.name, shown);
        stage.shell.Invalidate();
        EXPECT_EQ(stage.Frame(), shown) << "painted anew it looks different";
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, GoldenTest, ::testing::ValuesIn(kShapes),
                         [](const auto& shape) { return std::string(shape.param.name); });

}  // namespace
}  // namespace orma::test
