#include "stream/mime_message.h"

#include <algorithm>

namespace orma {
namespace {

const std::string kBoundary = "JStreamSmtp";

/// A file name for a quoted parameter, where quotes and backslashes would not stand for themselves.
std::string QuotableName(const Text& name) {
    std::string text = HeaderText(name);
    std::ranges::replace(text, '"', '\'');
    std::ranges::replace(text, '\\', '_');
    return text;
}

}  // namespace

std::string HeaderText(const Text& text) {
    std::string header = ToWindows1252(text);
    std::ranges::replace_if(
        header, [](char unit) { return (unit >= 0 && unit < ' ') || unit == 0x7f; }, ' ');
    return header;
}

void MimeMessage::Put(std::string_view text) {
    if (!text.empty()) sink_.Write(text.data(), static_cast<std::uint32_t>(text.size()));
}

void MimeMessage::PutLine(const std::string& text) {
    Put(text + "\r\n");
}

void MimeMessage::Start(const MailMessage& message) {
    const std::string name = QuotableName(message.attachmentName);
    const std::string delimiter = "\r\n--" + kBoundary + "\r\n";
    PutLine("From: " + HeaderText(message.sender));
    PutLine("To: " + HeaderText(message.recipient));
    PutLine("Subject: " + HeaderText(message.subject));
    PutLine("MIME-Version: 1.0");
    PutLine("Content-Type: multipart/mixed; BOUNDARY=\"" + kBoundary + "\"");
    Put(delimiter);
    PutLine("Content-Type: text/plain");
    Put("\r\n");
    Put(message.body);
    Put("\r\n");
    Put(delimiter);
    PutLine("Content-Type: application/octet-stream; name=\"" + name + "\"");
    PutLine("Content-Transfer-Encoding: base64");
    PutLine("Content-Disposition: attachment; filename=\"" + name + "\"");
    Put("\r\n");
    encoder_.Reset();
}

void MimeMessage::Attach(ByteSpan bytes) {
    Put(encoder_.Encode(bytes));
}

void MimeMessage::Finish() {
    Put(encoder_.Finish());
    Put("\r\n--" + kBoundary + "\r\n");  // an empty last part, which receivers are used to
    Put("\r\n--" + kBoundary + "--\r\n");
    Put("\r\n");
}

}  // namespace orma
