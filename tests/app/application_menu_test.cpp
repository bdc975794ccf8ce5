#include "app/application_menu.h"

#include <gtest/gtest.h>

#include "app/desk.h"

namespace orma::test {
namespace {

TEST(ApplicationMenu, TakesLieBesideTheProjectThatIsCurrentNow) {
    Desk desk;
    const TempFolder elsewhere;
    const auto app = desk.Start();
    ASSERT_TRUE(MenuNewProject(*app, elsewhere.Path(u"pier.opr")));
    desk.Record(*app, 25);
    EXPECT_TRUE(desk.files.storage.Exists(elsewhere.Path(u"pier00.wav")));
    ASSERT_TRUE(MenuNewProject(*app, desk.Path(u"city.opr")));
    desk.Record(*app, 25);
    ASSERT_TRUE(MenuOpen(*app, elsewhere.Path(u"pier.opr")));
    WriteFileBytes(desk.Path(u"bad.opr"), AsBytes("no project"));
    EXPECT_FALSE(MenuOpen(*app, desk.Path(u"bad.opr")));
    desk.Begin(*app, 25);
    EXPECT_TRUE(desk.files.storage.Exists(elsewhere.Path(u"pier01.wav")));
    EXPECT_FALSE(MenuOpen(*app, desk.Path(u"city.opr")));
    EXPECT_FALSE(MenuNewProject(*app, desk.Path(u"city.opr")));
    EXPECT_EQ(desk.files.boxes.Texts(),
              (std::vector<Text>{u"LoadProject Project Id", u"MenuOpen", u"MenuNewProject"}));
    EXPECT_EQ(app->project.Name(), u"pier");
}

}  // namespace
}  // namespace orma::test
