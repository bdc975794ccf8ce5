// What the page hears and what waits while a job blocks the event loop.

#include "window/page_desk.h"

namespace orma::test {
namespace {

struct JobEventsTest : PageTest {
    void Post(QEvent::Type type) { QCoreApplication::postEvent(&page_, NewMouse(type, {3, 4})); }

    JobEvents job_{page_};
};

TEST_F(JobEventsTest, DuringAJobThePointerAloneGetsThroughKeysAndWakeupsWait) {
    QtEventLoop loop;
    const auto wakeup = loop.CreateWakeup([&] {
        log_ += "wakeup ";
        loop.Post([&] { loop.Quit(0); });
    });
    const auto timer = loop.StartTimer(1, [&] { log_ += "tick "; });
    loop.Post([&] {
        wakeup->Signal();
        Post(QEvent::MouseButtonPress);
        QCoreApplication::postEvent(page_.windowHandle(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier));
        QCoreApplication::postEvent(&page_, new QEvent(QEvent::ContextMenu));
        Post(QEvent::MouseButtonRelease);
        page_.Changed({0, 0, 5, 5});
        frames_ = 0;
        log_.clear();
        for (int slice = 0; slice < 3; ++slice)
            job_.Serve();
        EXPECT_EQ(frames_, 1);
        EXPECT_EQ(log_, "down 3,4 up 3,4 ");
    });
    loop.Run();
    EXPECT_NE(log_.find("wakeup"), std::string::npos) << log_;
    QCoreApplication::processEvents();
    EXPECT_NE(log_.find("31 "), std::string::npos) << log_;
}

TEST_F(JobEventsTest, AfterAJobClicksAreDroppedAndAWishToCloseIsKnown) {
    Post(QEvent::MouseButtonPress);
    QCoreApplication::processEvents();
    log_.clear();
    Post(QEvent::MouseButtonPress);
    Post(QEvent::MouseButtonRelease);  // of the button that was held when the job began
    QCoreApplication::postEvent(page_.windowHandle(), new QCloseEvent);
    job_.Drop();
    EXPECT_EQ(log_, "up 3,4 ");
    EXPECT_TRUE(page_.isVisible());
    EXPECT_TRUE(job_.TakeClose());
    EXPECT_FALSE(job_.TakeClose());
    Post(QEvent::MouseButtonPress);
    job_.Serve();
    EXPECT_EQ(log_, "up 3,4 down 3,4 ");
}

}  // namespace
}  // namespace orma::test
