#include "window/window_desk.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "settings/settings_store.h"

namespace orma::test {
namespace {

constexpr Size kClient{480, 540};  // without a "size.txt"

}  // namespace

WindowDesk::WindowDesk(const std::string& audio) {
    WriteConfiguration(folder_);
    std::string error;
    if (!machine_.Open(
            {.home = folder_.Native().string(), .audio = audio, .hardware = "none", .trace = {}},
            error))
        ADD_FAILURE() << error;
    const QString shipped = QCoreApplication::applicationDirPath() + "/../skin/";
    skin_.emplace(storage_, bitmaps_, shipped.toStdU16String(), kClient, false);
    session_.emplace(machine_, running_);
    EXPECT_TRUE(session_->Start(u""));
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window()));
}

WindowDesk::~WindowDesk() {
    EXPECT_TRUE(boxes_.shown.empty()) << ToUtf8(boxes_.shown.front().text);
    session_.reset();
    std::filesystem::current_path("/");  // the folder is about to go
}

void WindowDesk::WriteConfiguration(const TempFolder& folder) {
    PosixStorage storage;
    FakeBoxes boxes;
    ErrorReporter report(boxes, storage);
    SettingsRecord settings;
    SettingsStore store({storage, report}, folder.Path(), settings);
    settings.CurrentProjectName = u"talk";
    EXPECT_TRUE(store.SaveConfiguration());
}

QMainWindow& WindowDesk::Window() const {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const window = qobject_cast<QMainWindow*>(widget)) return *window;
    throw std::runtime_error("there is no window");
}

PageWidget& WindowDesk::Page() const {
    return dynamic_cast<PageWidget&>(*Window().centralWidget());
}

void WindowDesk::Click(Element element) {
    const Rect rect = skin_->RectOf(element);
    const QPoint middle(rect.x + rect.w / 2, rect.y + rect.h / 2);
    QTest::mouseClick(Window().windowHandle(), Qt::LeftButton, {}, Page().mapTo(&Window(), middle));
}

void WindowDesk::PressKey(Qt::Key key) {
    QTest::keyClick(Window().windowHandle(), key);
}

void WindowDesk::Choose(const char* menu, const char* line) {
    QMenuBar* const bar = Window().menuBar();
    for (QAction* const title : bar->actions()) {
        if (title->text().trimmed() != menu) continue;
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(title).center());
        for (QAction* const action : title->menu()->actions())
            if (action->text() == line)
                return QTest::mouseClick(title->menu(), Qt::LeftButton, {},
                                         title->menu()->actionGeometry(action).center());
        title->menu()->close();
    }
    ADD_FAILURE() << "no line " << line << " in a menu " << menu;
}

std::string WindowDesk::ValueOf(TextView control) const {
    for (const Win* const win : Page().Controls())
        if (win->Label().name == control) return ToUtf8(win->Value());
    return "no such control";
}

bool WindowDesk::RunUntil(const std::function<bool()>& condition, int limitMs) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
    QTimer tick;
    tick.start(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void WindowDesk::Pass(int ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    EXPECT_TRUE(RunUntil([&] { return std::chrono::steady_clock::now() >= end; }, ms + 20000));
}

bool WindowDesk::End() {
    return loop_.Run() == 0 && session_->End();
}

}  // namespace orma::test
