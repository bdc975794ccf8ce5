#include "platform/curl/ftp_reply.h"

#include <algorithm>

namespace orma {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Escaped bytes of FromUtf8 are low surrogates with no high one before them.
bool HasEscapedBytes(TextView text) {
    bool high = false;
    for (const char16_t unit : text) {
        if (unit >= 0xDC00 && unit <= 0xDFFF && !high) return true;
        high = unit >= 0xD800 && unit <= 0xDBFF;
    }
    return false;
}

}  // namespace

void FtpReply::Clear() {
    line_.clear();
    kept_.clear();
    lastLine_.clear();
    number_ = 0;
}

void FtpReply::Take(std::string_view bytes) {
    while (!bytes.empty()) {
        if (Complete()) Clear();
        const std::size_t end = bytes.find('\n');
        const std::string_view part = bytes.substr(0, end);
        line_.append(part.substr(0, kKeptBytes - std::min(line_.size(), kKeptBytes)));
        if (end == std::string_view::npos) return;
        EndLine();
        bytes.remove_prefix(end + 1);
    }
}

void FtpReply::EndLine() {
    if (line_.ends_with('\r')) line_.pop_back();
    if (!kept_.empty() && kept_.size() < kKeptBytes) kept_ += '\n';
    kept_.append(line_, 0, kKeptBytes - kept_.size());
    if (line_.size() >= 4 && line_[0] != '0' && IsDigit(line_[0]) && IsDigit(line_[1]) &&
        IsDigit(line_[2]) && line_[3] == ' ') {
        number_ = (line_[0] - '0') * 100 + (line_[1] - '0') * 10 + (line_[2] - '0');
        lastLine_ = line_.substr(4);
    }
    line_.clear();
}

Text FtpReply::Words(std::string_view secret) const {
    std::string bytes = kept_;
    for (std::size_t at = 0; !secret.empty() && (at = bytes.find(secret, at)) != std::string::npos;
         at += 3)
        bytes.replace(at, secret.size(), "***");
    Text words = FromUtf8(bytes);
    if (HasEscapedBytes(words)) words = FromWindows1252(bytes);
    for (char16_t& unit : words) {
        if ((unit < 0x20 && unit != u'\n') || (unit >= 0x7F && unit < 0xA0)) unit = u' ';
    }
    return words.substr(0, kLongestWords);
}

}  // namespace orma
