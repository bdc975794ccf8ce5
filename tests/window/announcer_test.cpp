#include "window/announcer.h"

#include <QAccessible>

#include <gtest/gtest.h>

#include "window/accessible_page.h"

namespace orma {
namespace {

TEST(AnnouncerTest, ReadersSeeANotificationNamedByWhatIsSaid) {
    InstallAccessiblePage();
    QWidget window;
    Announcer announcer(&window);
    announcer.Say("Microphone lost");
    const QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&announcer);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::Notification);
    EXPECT_EQ(seen->text(QAccessible::Name), "Microphone lost");
}

}  // namespace
}  // namespace orma
