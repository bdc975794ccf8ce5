// The menu bar over its data.

#include "window/page_desk.h"

namespace orma {
namespace {

TEST_F(PageTest, MenusFollowTheirDataAndTellCommands) {
    QMenuBar bar;
    MenuBarView view(bar, *this);
    using Kind = MenuItem::Kind;
    opening_.menus = {{u"File",
                       {{Kind::kBitmap, Command::kPublishClip, u"Clip", true, false},
                        {Kind::kCommand, Command::kExit, u"Exit", true, false}}},
                      {u"  Edit  ",
                       {{Kind::kCommand, Command::kMark, u"Mark", false, false},
                        {Kind::kSeparator, Command::kNone, u"", true, false},
                        {Kind::kCommand, Command::kEditor, u"Editor", true, true}}}};
    view.Show(opening_);
    ASSERT_EQ(bar.actions().size(), 2);
    QMenu* const edit = bar.actions()[1]->menu();
    EXPECT_EQ(edit->title(), "  Edit  ");
    ASSERT_EQ(edit->actions().size(), 3);
    EXPECT_FALSE(edit->actions()[0]->isEnabled());
    EXPECT_TRUE(edit->actions()[1]->isSeparator());
    EXPECT_TRUE(edit->actions()[2]->isChecked());
    QAction* const editor = edit->actions()[2];

    // As it opens, the menu is brought up to date; what only changed its state stays the same line.
    opening_.menus[1].items[0].enabled = true;
    opening_.menus[1].items[2].ticked = false;
    emit edit->aboutToShow();
    EXPECT_TRUE(edit->actions()[0]->isEnabled());
    EXPECT_EQ(edit->actions()[2], editor);
    EXPECT_FALSE(editor->isChecked());
    opening_.menus[1].items = {{Kind::kCommand, Command::kMark, u"Delete marker", true, false}};
    emit edit->aboutToShow();
    ASSERT_EQ(edit->actions().size(), 1);
    EXPECT_EQ(edit->actions()[0]->text(), "Delete marker");

    edit->actions()[0]->trigger();
    bar.actions()[0]->menu()->actions()[0]->trigger();
    EXPECT_EQ(log_, "command 40043 command 40020 ");

    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    edit->actions()[0]->trigger();
    EXPECT_EQ(log_, "command 40043 command 40020 ") << "no job within a job's dialog";
}

TEST_F(PageTest, ASubmenuIsMadeAnewByTheChoiceWithinIt) {
    QMenuBar bar;
    MenuBarView view(bar, *this);
    using Kind = MenuItem::Kind;
    const auto file = [](const char16_t* first, bool enabled) {
        return MenuBar{{{u"File",
                         {{.kind = Kind::kSubmenu,
                           .text = u"Recent",
                           .items = {{.command = Command::kNone, .text = first, .enabled = enabled},
                                     {.command = Command::kExit, .text = u"b"}}}}}}};
    };
    view.Show(file(u"one & two", false));
    QMenu* const menu = bar.actions()[0]->menu();
    ASSERT_EQ(menu->actions().size(), 1);
    QMenu* submenu = menu->actions()[0]->menu();
    ASSERT_NE(submenu, nullptr);
    ASSERT_EQ(submenu->actions().size(), 2);
    EXPECT_EQ(submenu->actions()[0]->text(), "one && two");
    EXPECT_FALSE(submenu->actions()[0]->isEnabled());
    view.Show(file(u"one & two", true));
    EXPECT_EQ(menu->actions()[0]->menu(), submenu) << "the same lines";
    EXPECT_TRUE(submenu->actions()[0]->isEnabled());

    const QMetaObject::Connection again = QObject::connect(
        submenu->actions()[1], &QAction::triggered, [&] { view.Show(file(u"another", true)); });
    submenu->actions()[1]->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QObject::disconnect(again);
    submenu = menu->actions()[0]->menu();
    ASSERT_EQ(submenu->actions().size(), 2);
    EXPECT_EQ(submenu->actions()[0]->text(), "another");
    EXPECT_EQ(log_, "command 40024 ");
}

}  // namespace
}  // namespace orma
