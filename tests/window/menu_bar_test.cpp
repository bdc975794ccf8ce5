// The menu bar over its data.

#include "window/page_desk.h"

namespace orma::test {
namespace {

using Kind = MenuItem::Kind;

struct MenuBarTest : PageTest {
    /// The lines of a menu, or of a line's submenu.
    static QList<QAction*> Lines(const QAction* menu) { return menu->menu()->actions(); }

    QMenuBar bar_;
    MenuBarView view_{bar_, *this};
};

TEST_F(MenuBarTest, MenusFollowTheirDataAndTellCommands) {
    opening_.menus = {{u"File", {{Kind::kBitmap, Command::kPublishClip, u"Clip"}}},
                      {u"Edit",
                       {{Kind::kCommand, Command::kMark, u"Mark", false, false},
                        {Kind::kSeparator},
                        {Kind::kCommand, Command::kEditor, u"Editor", true, true}}}};
    view_.Show(opening_);
    QAction* const menu = bar_.actions().at(1);
    ASSERT_EQ(Lines(menu).size(), 3);
    EXPECT_FALSE(Lines(menu)[0]->isEnabled());
    EXPECT_TRUE(Lines(menu)[1]->isSeparator());
    QAction* const editor = Lines(menu)[2];
    EXPECT_TRUE(editor->isChecked());

    // As it opens, the menu is brought up to date; what only changed its state stays the same line.
    opening_.menus[1].items[0].enabled = true;
    opening_.menus[1].items[2].ticked = false;
    emit menu->menu()->aboutToShow();
    EXPECT_TRUE(Lines(menu)[0]->isEnabled());
    EXPECT_EQ(Lines(menu)[2], editor);
    EXPECT_FALSE(editor->isChecked());
    opening_.menus[1].items = {{Kind::kCommand, Command::kMark, u"Delete marker"}};
    emit menu->menu()->aboutToShow();
    ASSERT_EQ(Lines(menu).size(), 1);
    EXPECT_EQ(Lines(menu)[0]->text(), "Delete marker");

    Lines(menu)[0]->trigger();
    Lines(bar_.actions()[0])[0]->trigger();
    const ModalDialog dialog;
    Lines(menu)[0]->trigger();
    EXPECT_EQ(log_, "command 40043 command 40020 ") << "no job within a job's dialog";
}

TEST_F(MenuBarTest, ASubmenuIsMadeAnewByTheChoiceWithinIt) {
    const auto show = [&](const char16_t* first, bool enabled) {
        const MenuItem lines[] = {{.text = first, .enabled = enabled},
                                  {.command = Command::kExit, .text = u"b"}};
        view_.Show({{{u"File",
                      {{.kind = Kind::kSubmenu,
                        .text = u"Recent",
                        .items = {std::begin(lines), std::end(lines)}}}}}});
    };
    const auto submenu = [&] { return Lines(bar_.actions().at(0)).at(0); };
    show(u"one & two", false);
    QAction* const before = submenu();
    ASSERT_EQ(Lines(before).size(), 2);
    EXPECT_EQ(Lines(before)[0]->text(), "one && two");
    EXPECT_FALSE(Lines(before)[0]->isEnabled());
    show(u"one & two", true);
    EXPECT_EQ(submenu(), before) << "the same lines";
    EXPECT_TRUE(Lines(before)[0]->isEnabled());

    QObject::connect(Lines(before)[1], &QAction::triggered, [&] { show(u"another", true); });
    Lines(before)[1]->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_EQ(Lines(submenu()).size(), 2);
    EXPECT_EQ(Lines(submenu())[0]->text(), "another");
    EXPECT_EQ(log_, "command 40024 ");
}

}  // namespace
}  // namespace orma::test
