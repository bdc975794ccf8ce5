#include "report/error_reporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace_lines.h"
#include "support/test_files.h"

namespace orma {
namespace {

using testing::ElementsAre;

struct ErrorReporterTest : testing::Test {
    test::TestFiles files;
    test::TraceLines trace;
};

TEST_F(ErrorReporterTest, ShowsAnErrorInAnErrorBoxWithOneButton) {
    files.report.ShowError(u"LoadProject Project Id");
    const MessageBox& box = files.boxes.shown.at(0);
    EXPECT_EQ(box.title + u": " + box.text, u"Error: LoadProject Project Id");
    EXPECT_EQ(box.icon, BoxIcon::kError);
    EXPECT_EQ(box.buttons, BoxButtons::kOk);
    EXPECT_THAT(trace.lines, ElementsAre("ERROR\tLoadProject Project Id"));
}

TEST_F(ErrorReporterTest, NamesOperationNumberAndTextOrAFixedInternetTextAlone) {
    for (const SystemError code : {2U, 11999U, 12000U, 12174U, 12175U, 12002U, 12007U, 12013U,
                                   12014U, 12029U, 12031U, 12037U, 12038U, 12045U, 12157U})
        files.report.ReportSystemFailure(u"CreateFile", code);
    EXPECT_THAT(files.boxes.Texts(),
                ElementsAre(u"CreateFile 2 No such file or directory", u"CreateFile 11999",
                            u"CreateFile 12000", u"CreateFile 12174", u"CreateFile 12175",
                            u"Timeout", u"Servername not resolved", u"Incorrect username",
                            u"Incorrect username or password", u"Cannot connect",
                            u"Connection lost", u"Certificate of the server\nis expired.",
                            u"Certificate is for\nanother server name.",
                            u"Certificate of the server\nis not trusted.",
                            u"No TLS connection\nwith the server."));
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
    EXPECT_EQ(trace.lines[0], "InternetConnect 12003 530 Login incorrect.");
}

TEST_F(ErrorReporterTest, SilencesInternetFailuresAlone) {
    files.report.SilenceInternetFailures(true);
    files.report.ReportInternetFailure(u"InternetConnect", 12003, u"530");
    files.report.ReportSystemFailure(u"ReadFile", 12002);
    files.report.SilenceInternetFailures(false);
    files.report.ReportInternetFailure(u"FtpOpenFile", 12029, u"");
    EXPECT_THAT(files.boxes.Texts(), ElementsAre(u"Timeout", u"Cannot connect"));
}

}  // namespace
}  // namespace orma
