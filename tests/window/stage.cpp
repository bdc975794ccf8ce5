#include "window/stage.h"

#include <QCoreApplication>
#include <QImage>
#include <algorithm>
#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "ui/screens/about_w_win.h"
#include "ui/screens/clip_editor_w_win.h"
#include "ui/screens/editor_w_win.h"
#include "ui/screens/record_w_win.h"

namespace orma::test {
namespace {

constexpr Pages kBackground{494, 495};
constexpr Pages kProgressPages{492, 493};
constexpr Pages kClipPages{496, 497};
constexpr Pages kAboutPages{498, 499};
constexpr RecorderScreenOptions kEverything{.showMaxTime = true,
                                            .showBattery = true,
                                            .markButtons = true,
                                            .gainControl = true,
                                            .volumeControl = true};

/// Where the build put the shipped skins.
Text SkinRoot() {
    return (QCoreApplication::applicationDirPath() + QStringLiteral("/../share/orma-edit/skin/"))
        .toStdU16String();
}

Picture Black(Size size) {
    Picture picture{size.width, size.height, {}};
    picture.pixels.resize(static_cast<std::size_t>(size.width) *
                          static_cast<std::size_t>(size.height));
    return picture;
}

/// The amplitude of a period of speech: syllables of a quarter of a second, words with gaps between
/// them.
std::int16_t Loudness(std::uint32_t period) {
    const std::uint32_t word = period / 23;
    if (period % 23 >= 17 + word % 4) return 20;
    const std::uint32_t random = (period * 2654435761U) >> 21;  // Knuth's multiplicative hash
    const std::uint32_t swell = 5 - std::min(period % 5, 4 - period % 5);
    return static_cast<std::int16_t>(600 + (2000 + random * 5) / swell);
}

}  // namespace

SystemError Stage::Disk::FreeBytes(const Text& /*folder*/, std::uint64_t& bytes) {
    bytes = std::uint64_t{3} << 30;
    return 0;
}

Stage::Stage(Size client)
    : image_(Black(client)),
      skin_(disk_, bitmaps_, SkinRoot(), client, false),
      canvas_(image_, ink_, [](const Rect&) {}),
      page_(*this, client),
      shell({.app = app,
             .window = window_,
             .dialogs = dialogs_,
             .makeScreen = [this](ScreenIndex index) { return Make(index); },
             .textEditor = textEditor_,
             .publishDialogs = publishDialogs_}),
      app({.storage = disk_,
           .clock = clock_,
           .boxes = boxes_,
           .loop = loop_,
           .waves = waves_,
           .headset = headset_},
          {shell, progress_}, folder_.Path()) {
    LoadSettings(app);
    EXPECT_TRUE(OpenOrCreateProject(app, folder_.Path(u"harbour.opr")));
    app.input.SetInputGain(12);
    app.input.SetOutputVolume(-6);
    shell.Open(client);
    (void)Frame();
}

Stage::~Stage() {
    shell.Close();
}

// One place for each screen there is.
std::unique_ptr<WWin> Stage::Make(ScreenIndex index) {
    const auto scene = [this](Pages pages) {
        return Scene{skin_, canvas_, shell.PointerState(), pages};
    };
    switch (index) {
        case ScreenIndex::kRecorder:
            return std::make_unique<RecordWWin>(
                scene(kBackground), shell,
                RecorderScreenServices{app.transport, app.recorder, app.recording, app.audio,
                                       app.input, app.externalRecorder, *this},
                kEverything);
        case ScreenIndex::kEditor:
            return std::make_unique<EditorWWin>(
                scene(kBackground), shell,
                EditorScreenServices{app.transport, app.recorder, app.project, app.recording,
                                     app.audio, app.externalRecorder},
                false);
        case ScreenIndex::kAbout:
            return std::make_unique<AboutWWin>(
                scene(kAboutPages), shell, ProductVersion{3, 1, 4}, [] {
                    return AboutInfo{.freeMemory = 123'456'000,
                                     .processorLoad = 7,
                                     .battery = 83,
                                     .projectLocation = u"/home/anna/recordings/news/harbour/",
                                     .mp2 = true,
                                     .bitrate = 128,
                                     .secondsLeft = 2 * 3600 + 14 * 60 + 5};
                });
        case ScreenIndex::kProgress:
            return std::make_unique<ProgressWWin>(scene(kProgressPages), shell, clock_, [] {});
        case ScreenIndex::kClipEditor:
            return std::make_unique<ClipEditorWWin>(
                scene(kClipPages), shell,
                ClipEditorServices{app.transport, app.project, clipList_,
                                   [] { return std::nullopt; }},
                app.settings.DetailedView != 0);
        case ScreenIndex::kTextEditor:
            break;
    }
    return nullptr;
}

ProgressWWin& Stage::Progress() {
    return dynamic_cast<ProgressWWin&>(*shell.Screen(ScreenIndex::kProgress));
}

void Stage::Run(Command command) {
    EXPECT_TRUE(shell.OnCommand(static_cast<std::uint32_t>(command)));
}

void Stage::Click(Element element) {
    const Rect rect = skin_.RectOf(element);
    const Point middle{rect.x + rect.w / 2, rect.y + rect.h / 2};
    shell.OnLeftDown(middle);
    shell.OnLeftUp(middle);
    loop_.RunPending();
}

// Without a mean value, which the DC blocker would take away.
void Stage::Deliver(std::int16_t amplitude) {
    constexpr std::size_t kSamples = 2205;
    Bytes bytes(kSamples * 2);
    for (std::size_t i = 0; i < kSamples; ++i) {
        const int sample = i % 2 == 0 ? amplitude : -amplitude;
        StoreLe(&bytes[2 * i], static_cast<std::uint16_t>(sample));
    }
    ASSERT_TRUE(waves_.in.Deliver(bytes));
}

void Stage::Speak(int periods) {
    for (int i = 0; i < periods; ++i)
        Deliver(Loudness(spoken_++));
}

void Stage::Hear(int periods) {
    for (int i = 0; i < periods && waves_.out.FinishOne(); ++i)
        loop_.RunPending();
}

void Stage::RecordTake() {
    app.transport.Record(true);
    app.transport.Play(true);
    Speak(1);
    for (const int periods : {100, 200, 150}) {
        Speak(periods);
        app.transport.Record(false);  // sets a mark
    }
    Speak(150);
    app.transport.Stop(true);
    loop_.RunPending();
    ASSERT_TRUE(app.recorder.IsClosed());
    ASSERT_EQ(app.recording.sheet.marks.size(), 3U);
}

void Stage::DateRecordings() {
    using namespace std::chrono;
    const sys_seconds noon = sys_days{2026y / March / 14} + 12h;
    for (const auto& file : std::filesystem::directory_iterator(ToUtf8(folder_.Path())))
        std::filesystem::last_write_time(file.path(), file_clock::from_sys(noon));
}

QImage Stage::Frame() {
    return page_.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

}  // namespace orma::test
