#include "app/live_uploads.h"

#include "base/trace.h"

namespace orma {
namespace {

/// Why the file on the server is not whole, in the words of the server where it gave any.
Text ReasonOf(const UploadOutcome& outcome) {
    if (outcome.result.Ok())
        return FormatText("%llu of %llu bytes arrived",
                          static_cast<unsigned long long>(*outcome.remoteBytes),
                          static_cast<unsigned long long>(outcome.bytes));
    if (outcome.result.code == kFtpCancelled) return u"given up";
    Text reason = outcome.operation + FormatText(" %d", static_cast<int>(outcome.result.code));
    if (!outcome.result.reply.empty()) reason += u" " + outcome.result.reply;
    return reason;
}

}  // namespace

LiveUploads::LiveUploads(FtpClients& carriers, EventLoop& loop, ErrorReporter& report)
    : report_(report),
      clients_(carriers, loop, *this),
      services_{.clients = clients_, .report = report, .patience = patience_} {}

bool LiveUploads::Finish(Patience& patience) {
    if (Wait(patience)) return true;
    GiveUp();
    (void)Wait(patience_);  // an upload that is given up ends at once
    return false;
}

void LiveUploads::OnUploadEnded(const UploadOutcome& outcome) {
    last_ = outcome;
    if (outcome.IsWhole()) {
        Trace("uploaded %s, %llu bytes", ToUtf8(outcome.path).c_str(),
              static_cast<unsigned long long>(outcome.bytes));
        return;
    }
    const Text what =
        outcome.began ? u"The upload is not whole:\n" : u"The take is not uploaded:\n";
    report_.ShowError(what + outcome.path + u"\n" + ReasonOf(outcome));
}

void LiveUploads::OnLogInFailed(const FtpResult& result) {
    report_.ReportInternetFailure(u"InternetConnect", result.code, result.reply);
}

}  // namespace orma
