#include "report/error_reporter.h"

#include <array>

#include "base/trace.h"

namespace orma {
namespace {

// The range of internet operations, which the system's own message table does not hold.
constexpr SystemError kFirstInternetCode = 12000;
constexpr SystemError kLastInternetCode = 12174;

// The server refused and gave its reason.
constexpr SystemError kExtendedError = 12003;
constexpr std::size_t kLongestReply = 799;

struct InternetText {
    SystemError code;
    const char16_t* text;
};

constexpr std::array<InternetText, 10> kInternetTexts = {{
    {12002, u"Timeout"},
    {12007, u"Servername not resolved"},
    {12013, u"Incorrect username"},
    {12014, u"Incorrect username or password"},
    {12029, u"Cannot connect"},
    {12031, u"Connection lost"},
    {12037, u"Certificate of the server\nis expired."},
    {12038, u"Certificate is for\nanother server name."},
    {12045, u"Certificate of the server\nis not trusted."},
    {12157, u"No TLS connection\nwith the server."},
}};

/// The beginning of a report: the operation's name and the code.
Text NameAndCode(const Text& operation, SystemError code) {
    return operation + FormatText(" %d", static_cast<int>(code));
}

}  // namespace

ErrorReporter::ErrorReporter(MessageBoxes& boxes, Storage& storage)
    : boxes_(boxes), storage_(storage) {}

void ErrorReporter::ShowError(const Text& text) {
    Trace("ERROR\t%s", text.empty() ? "EMPTY!" : ToUtf8(text).c_str());
    boxes_.Show({.text = text});
}

void ErrorReporter::ReportSystemFailure(const Text& operation, SystemError code) {
    Text text = NameAndCode(operation, code);
    const bool internet = code >= kFirstInternetCode && code <= kLastInternetCode;
    const Text systemText = internet ? Text() : storage_.ErrorText(code);
    if (!systemText.empty()) text += u" " + systemText;
    for (const InternetText& entry : kInternetTexts) {
        if (systemText.empty() && entry.code == code) text = entry.text;
    }
    TraceAndShow(text);
}

void ErrorReporter::ReportInternetFailure(const Text& operation, SystemError code,
                                          TextView serverReply) {
    if (internetSilent_) return;
    if (code != kExtendedError) {
        ReportSystemFailure(operation, code);
        return;
    }
    TraceAndShow(NameAndCode(operation, code) + u" " + Text(serverReply.substr(0, kLongestReply)));
}

void ErrorReporter::TraceAndShow(const Text& text) {
    Trace("%s", ToUtf8(text).c_str());
    boxes_.Show({.text = text});
}

}  // namespace orma
