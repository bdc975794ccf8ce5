// What the page hears and what waits while a job blocks the event loop.

#include "window/page_desk.h"

namespace orma {
namespace {

TEST_F(PageTest, DuringAJobThePointerAloneGetsThroughKeysAndWakeupsWait) {
    QtEventLoop loop;
    page_.show();
    page_.setFocus();
    QCoreApplication::processEvents();
    JobEvents job(page_);
    const auto wakeup = loop.CreateWakeup([&] {
        log_ += "wakeup ";
        loop.Post([&] { loop.Quit(0); });
    });
    const auto post = [&](QEvent::Type type) {
        auto* const event = new QMouseEvent(
            type, QPointF(3, 4), page_.mapToGlobal(QPointF(3, 4)), Qt::LeftButton,
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::postEvent(&page_, event);
    };
    const auto timer = loop.StartTimer(1, [&] { log_ += "tick "; });
    loop.Post([&] {
        wakeup->Signal();
        post(QEvent::MouseButtonPress);
        QCoreApplication::postEvent(page_.windowHandle(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier));
        QCoreApplication::postEvent(&page_, new QEvent(QEvent::ContextMenu));
        post(QEvent::MouseButtonRelease);
        page_.Changed({0, 0, 5, 5});
        frames_ = 0;
        log_.clear();
        for (int slice = 0; slice < 3; ++slice)
            job.Serve();
        EXPECT_EQ(frames_, 1);
        EXPECT_EQ(log_, "down 3,4 up 3,4 ");
    });
    loop.Run();
    EXPECT_NE(log_.find("wakeup"), std::string::npos) << log_;
    QCoreApplication::processEvents();
    EXPECT_NE(log_.find("31 "), std::string::npos) << log_;
}

TEST_F(PageTest, AfterAJobClicksAreDroppedAndAWishToCloseIsKnown) {
    page_.show();
    QCoreApplication::processEvents();
    JobEvents job(page_);
    const auto post = [&](QEvent::Type type) {
        QCoreApplication::postEvent(
            &page_,
            new QMouseEvent(type, QPointF(3, 4), page_.mapToGlobal(QPointF(3, 4)), Qt::LeftButton,
                            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                            Qt::NoModifier));
    };
    post(QEvent::MouseButtonPress);
    QCoreApplication::processEvents();
    log_.clear();
    post(QEvent::MouseButtonPress);
    post(QEvent::MouseButtonRelease);  // of the button that was held when the job began
    QCoreApplication::postEvent(page_.windowHandle(), new QCloseEvent);
    job.Drop();
    EXPECT_EQ(log_, "up 3,4 ");
    EXPECT_TRUE(page_.isVisible());
    EXPECT_TRUE(job.TakeClose());
    EXPECT_FALSE(job.TakeClose());
    post(QEvent::MouseButtonPress);
    job.Serve();
    EXPECT_EQ(log_, "up 3,4 down 3,4 ");
}

}  // namespace
}  // namespace orma
