#include "report/error_reporter.h"

#include <gmock/gmock.h>

#include "base/trace_lines.h"
#include "support/test_files.h"

namespace orma {
namespace {

using testing::ElementsAre;

struct ErrorReporterTest : testing::Test {
    test::TestFiles files;
    test::TraceLines trace;
};

TEST_F(ErrorReporterTest, NamesOperationNumberAndTextOrAFixedInternetTextAlone) {
    for (const SystemError code : {2U, 11999U, 12000U, 12174U, 12175U, 12002U, 12157U})
        files.report.ReportSystemFailure(u"CreateFile", code);
    EXPECT_THAT(files.boxes.Texts(),
                ElementsAre(u"CreateFile 2 No such file or directory", u"CreateFile 11999",
                            u"CreateFile 12000", u"CreateFile 12174", u"CreateFile 12175",
                            u"Timeout", u"No TLS connection\nwith the server."));
    EXPECT_EQ(files.boxes.shown[0].title, u"Error");
    EXPECT_EQ(files.boxes.shown[0].icon, BoxIcon::kError);
    EXPECT_EQ(trace.lines[0], "CreateFile 2 No such file or directory");
}

TEST_F(ErrorReporterTest, ShowsTheServersOwnReplyWhenTheServerRefused) {
    const Text reply(1000, u'r');
    files.report.ReportInternetFailure(u"InternetConnect", 12003, u"530 Login incorrect.");
    files.report.ReportInternetFailure(u"FtpOpenFile", 12003, reply);
    files.report.ReportInternetFailure(u"InternetWriteFile", 12031, u"not asked for");
    EXPECT_THAT(files.boxes.Texts(),
                ElementsAre(u"InternetConnect 12003 530 Login incorrect.",
                            u"FtpOpenFile 12003 " + reply.substr(0, 799), u"Connection lost"));
}

}  // namespace
}  // namespace orma
