#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QTextCursor>

#include <gtest/gtest.h>

#include "app/desk.h"
#include "window/dialogs/qt_text_editor.h"

namespace orma::test {
namespace {

struct TextEditorTest : testing::Test {
    TextEditorTest() {
        area.resize(300, 200);
        area.show();
    }

    TextSheet* Sheet() { return area.findChild<TextSheet*>(); }
    void Type(const char* text) { Sheet()->insertPlainText(QString::fromUtf8(text)); }

    /// What a start after a crash finds.
    Text TextAfterACrash() {
        const auto again = desk.Start();
        EXPECT_TRUE(OpenProjectAtStart(*again, {}));
        return again->project.ProjectText();
    }

    Desk desk;
    std::unique_ptr<Application> app = desk.Start();
    QWidget area;
    QtTextEditor editor{*app, {[this] { return &area; }, [this] { editor.Close(); }}, 1};
};

TEST_F(TextEditorTest, CoversTheClientAreaAndHandsTheTextOverWhenItCloses) {
    app->project.SetProjectText(u"One\r\nTwo");
    editor.Open();
    ASSERT_NE(Sheet(), nullptr);
    EXPECT_EQ(Sheet()->toPlainText(), "One\nTwo");
    area.resize(400, 260);
    QCoreApplication::processEvents();
    EXPECT_EQ(Sheet()->geometry(), area.rect());

    Sheet()->moveCursor(QTextCursor::End);
    Type("\n10 m\xC2\xA0/ s \xF0\x9F\x99\x82");
    editor.Close();
    EXPECT_FALSE(editor.IsOpen());
    EXPECT_EQ(app->project.ProjectText(), u"One\r\nTwo\r\n10 m\u00A0/ s \U0001F642");
}

TEST_F(TextEditorTest, EscapeClosesAndATextThatNobodyTouchedStaysAsItIs) {
    for (const Text text : {u"bare\nends", u"", u"mixed\r\nends\nhere"}) {
        app->project.SetProjectText(text);
        editor.Open();
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(Sheet(), &escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(editor.IsOpen());
        EXPECT_EQ(Sheet(), nullptr);
        EXPECT_EQ(app->project.ProjectText(), text);
    }
    app->project.SetProjectText(u"bare\nends");
    editor.Open();
    Type("new ");
    editor.Close();
    EXPECT_EQ(app->project.ProjectText(), u"new bare\nends");
}

TEST_F(TextEditorTest, WhatWasTypedOutlivesACrash) {
    ASSERT_TRUE(OpenProjectAtStart(*app, {}));
    editor.Open();
    Type("The mayor said");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !app->project.ProjectText().empty(); }));
    EXPECT_TRUE(editor.IsOpen());
    EXPECT_EQ(TextAfterACrash(), u"The mayor said");
    Sheet()->undo();
    editor.Close();
    EXPECT_EQ(TextAfterACrash(), u"");
}

}  // namespace
}  // namespace orma::test
