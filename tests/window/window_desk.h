#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>
#include <string>

#include "platform/qt/qt_event_loop.h"
#include "support/fake_boxes.h"
#include "support/fake_running_instance.h"
#include "support/temp_folder.h"
#include "ui/skin/skin.h"
#include "window/page_widget.h"
#include "window/resource_bitmaps.h"
#include "window/window_session.h"

namespace orma::test {

/// The window of orma-edit on this machine as its main() makes it, in a program folder of its own
/// whose project is "talk", driven by a pointer and keys as they come from the display. Another
/// instance and boxes are the only fakes; a box is answered at once and is a fault.
class WindowDesk {
  public:
    /// `audio` as behind --audio.
    explicit WindowDesk(const std::string& audio);
    ~WindowDesk();

    /// The left button on the middle of an element.
    void Click(Element element);
    void PressKey(Qt::Key key);

    /// Opens a menu of the bar and clicks on one of its lines.
    void Choose(const char* menu, const char* line);

    /// What the control of that name on the current screen tells helpers of the desktop.
    [[nodiscard]] std::string ValueOf(TextView control) const;

    /// Lets the window run until the condition holds; false when it does not within the time.
    [[nodiscard]] bool RunUntil(const std::function<bool()>& condition, int limitMs = 20000);
    void Pass(int ms);

    /// After the window was asked to end: what main() does then. False when something was not
    /// saved.
    [[nodiscard]] bool End();

    [[nodiscard]] Text Path(TextView name) const { return folder_.Path(name); }

  private:
    static void WriteConfiguration(const TempFolder& folder);
    [[nodiscard]] QMainWindow& Window() const;
    [[nodiscard]] PageWidget& Page() const;

    TempFolder folder_;
    QtEventLoop loop_;
    FakeBoxes boxes_;
    Machine machine_{loop_, boxes_};
    std::vector<std::string> log_;
    FakeRunningInstance running_{log_};
    PosixStorage storage_;
    ResourceBitmaps bitmaps_;
    std::optional<Skin> skin_;
    std::optional<WindowSession> session_;
};

}  // namespace orma::test
