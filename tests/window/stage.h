#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/posix/posix_storage.h"
#include "platform/system_status.h"
#include "shell/shell.h"
#include "support/fake_boxes.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_main_window.h"
#include "support/fake_wave.h"
#include "support/quiet_ports.h"
#include "support/temp_folder.h"
#include "ui/screens/progress_w_win.h"
#include "window/dialogs/qt_publish_dialogs.h"
#include "window/dialogs/qt_text_editor.h"
#include "window/file_dialogs.h"
#include "window/page_widget.h"
#include "window/qt_clip_list.h"
#include "window/qt_ink.h"
#include "window/resource_bitmaps.h"

namespace orma::test {

/// The client area with its real skin, letters and screens, on a whole application whose sound,
/// clock, machine and disk space are always the same: what it shows depends on nothing but what is
/// done here.
class Stage : private SystemStatus, private PageClient {
  public:
    /// `client` in pixels: its shape chooses the skin, its size the scale.
    explicit Stage(Size client);
    ~Stage() override;

    /// A take of 600 periods of "speech" with marks at 100, 300 and 450; stopped at its end.
    void RecordTake();

    /// Lets the microphone hear `periods` of speech.
    void Speak(int periods);

    /// Lets it hear one period of that amplitude.
    void Deliver(std::int16_t amplitude);

    /// Lets `periods` of what is played be heard.
    void Hear(int periods);

    /// Dates the project's recordings at noon of a day of 2026.
    void DateRecordings();

    /// Lets time pass, milliseconds.
    void Pass(std::uint32_t ms) { clock_.ticks += ms; }

    void Go(std::int32_t position) { app.transport.MoveTo(position); }
    void Run(Command command);

    /// The left button on an element of the current screen.
    void Click(Element element);

    [[nodiscard]] ProgressWWin& Progress();

    /// The client area with its next frame.
    [[nodiscard]] QImage Frame();

  private:
    class Disk : public PosixStorage {
        [[nodiscard]] SystemError FreeBytes(const Text& folder, std::uint64_t& bytes) override;
    };

    std::optional<int> BatteryPercent() override { return 83; }
    std::optional<std::uint64_t> FreeMemory() override { return 123'456'000; }
    std::optional<int> ProcessorLoad() override { return 7; }

    // PageClient: nobody is at the page but the clip list.
    [[nodiscard]] const Picture& Image() override { return image_; }
    [[nodiscard]] std::span<const std::unique_ptr<Win>> Controls() override { return {}; }
    [[nodiscard]] Win* Focused() override { return nullptr; }
    void BeforePaint() override { shell.OnPaint(); }
    void LeftDown(Point) override {}
    void LeftUp(Point) override {}
    void Moved(Point) override {}
    void Wheel(Point, int, bool) override {}
    void RightDown(Point) override {}
    void RightUp(Point) override {}
    void KeyDown(orma::Key, bool) override {}
    void KeyUp(orma::Key) override {}

    [[nodiscard]] std::unique_ptr<WWin> Make(ScreenIndex index);

    TempFolder folder_;
    Disk disk_;
    FakeBoxes boxes_;
    FakeClock clock_;
    FakeEventLoop loop_;
    FakeWaveSystem waves_{loop_};
    NoHeadset headset_;
    NoProgress progress_;
    std::vector<std::string> log_;
    FakeMainWindow window_{log_};
    FileDialogs dialogs_{app};
    QtPublishDialogs publishDialogs_;
    QtTextEditor textEditor_{app, {[this]() -> QWidget* { return &page_; }, [] {}}};
    ResourceBitmaps bitmaps_;
    QtInk ink_;
    Picture image_;
    Skin skin_;
    Canvas canvas_;
    PageWidget page_;
    QtClipList clipList_{[this] { return &page_; }, ink_, [](ListNotification) {}};
    std::uint32_t spoken_ = 0;  // periods

  public:
    Shell shell;
    Application app;
};

}  // namespace orma::test
