#include "workday.h"

#include <cmath>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

#include "app/options.h"
#include "app/start_up.h"
#include "audio/files/vu_file.h"

namespace orma::test {
namespace {

constexpr std::int32_t kOldGainDb = 5;
constexpr std::int32_t kGainDb = 3;

/// A voice: syllables with a hundred tone changes, so that no two periods are alike.
Bytes Voice(std::uint32_t periods) {
    const std::size_t samples = std::size_t{periods} * Workday::kPeriodBytes / 2;
    Bytes sound(samples * 2);
    double phase = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        const double seconds = static_cast<double>(i) / 44100;
        phase += 2 * std::numbers::pi * (220 + 90 * seconds) / 44100;
        const double syllable = 0.55 - 0.45 * std::cos(2 * std::numbers::pi * 3.1 * seconds);
        StoreLe(&sound[2 * i], static_cast<std::int16_t>(9000 * syllable * std::sin(phase)));
    }
    return sound;
}

}  // namespace

std::unique_ptr<Application> Workday::Start(Storage& storage, MessageBoxes& boxes) {
    auto app = std::make_unique<Application>(Ports{.storage = storage,
                                                   .clock = clock_,
                                                   .boxes = boxes,
                                                   .loop = loop_,
                                                   .waves = waves_,
                                                   .headset = headset_},
                                             FrontEnd{screen_, progress_}, medium_.Path());
    LoadSettings(*app);
    app->audio.appendPerBlock = recording_.appendPerBlock;
    return app;
}

TakeAccount Workday::Record(Application& app, std::uint32_t periods, const FaultyStorage* storage) {
    static const Bytes voice = Voice(kPeriods[0]);
    const auto isWell = [&] { return storage == nullptr || !storage->HasFailed(); };
    TakeAccount take;
    waves_.in.calls.clear();
    take.started = app.recorder.WavStartRecording() == 0;
    if (!take.started) return take;
    app.recorder.WavStartRecordSaving();
    take.name = app.recording.name;
    (void)waves_.in.DeliverValue(0);  // the buffer behind which saving begins
    while (take.delivered < periods && app.recorder.IsActive()) {
        (void)waves_.in.Deliver(
            ByteSpan(voice).subspan(std::size_t{take.delivered} * kPeriodBytes, kPeriodBytes));
        ++take.delivered;
        if (isWell()) take.deliveredBeforeFault = take.delivered;
        if (take.delivered % 9 == 4) (void)app.recorder.MarkWhileRecording();
    }
    take.endedEarly = !app.recorder.IsActive();
    app.recorder.WavStopRecording();
    loop_.RunPending();
    EXPECT_TRUE(app.recorder.IsClosed());
    take.closedBeforeFault = isWell();
    return take;
}

namespace {

/// A publication to a file shows none.
class NoDialogs : public PublishDialogs {
  public:
    [[nodiscard]] bool ShowEmailDialog(EmailDialog&) override { return false; }
    [[nodiscard]] bool ShowFtpDialog(FtpDialog&) override { return false; }
};

}  // namespace

PublishOutcome Workday::Publish(Application& app) {
    const std::uint8_t before = std::exchange(app.settings.PublishToFile, std::uint8_t{1});
    NoDialogs dialogs;
    PublishJob job(app.Publishing(dialogs));
    const PublishOutcome outcome = job.MenuPublishCliplistToFile(false);
    app.settings.PublishToFile = before;
    return outcome;
}

void Workday::Prepare() {
    FakeBoxes boxes;
    const auto app = Start(medium_.storage, boxes);
    ProjectOptions options = ProjectOptionsOf(app->settings);
    options.recordMp2 = recording_.mp2;
    options.bitrateIndex = kBitrateIndex;
    app->project.SetOptions(options);
    ASSERT_TRUE(OpenOrCreateProject(*app, ProjectPath()));
    app->project.SetProjectText(u"Harbour");
    (void)Record(*app, 22, nullptr);
    ASSERT_EQ(app->clips.Count(), 1);
    app->recording.sheet.marks = {6};
    app->recording.sheet.cuts = {{9, 14, 0}};
    ASSERT_TRUE(WriteVuFile(app->files, app->recording.levelPath, app->recording.sheet));
    ASSERT_EQ(Publish(*app), PublishOutcome::kPublished);
    app->settings.ImageFolder = kImageFolder;
    app->input.SetInputGain(kOldGainDb - app->input.InputGainDb());
    ASSERT_TRUE(ShutDown(*app));
    ASSERT_TRUE(boxes.shown.empty());
}

Account Workday::Live(FaultyStorage& storage) {
    Account account;
    FakeBoxes boxes;
    {
        const auto app = Start(storage, boxes);
        app->input.SetInputGain(kGainDb - app->input.InputGainDb());
        if (OpenOrCreateProject(*app, ProjectPath())) {
            for (std::size_t i = recording_.edits ? 1 : 0; i < kPeriods.size(); ++i)
                account.takes[i] = Record(*app, kPeriods[i], &storage);
            if (recording_.edits) account.edits = Edit(*app, boxes);
            account.outcome = Publish(*app);
        }
        account.saved = ShutDown(*app);
    }
    account.boxes = boxes.Texts();
    return account;
}

}  // namespace orma::test
