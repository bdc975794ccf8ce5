#pragma once

#include <string_view>

#include "platform/curl/ftp_reply.h"
#include "platform/ftp_client.h"

namespace orma {

/// What the server refused, in its own words without the `secret`.
[[nodiscard]] FtpResult Refusal(const FtpReply& reply, std::string_view secret);

/// Turns libcurl's code (CURLcode) of a failed exchange into one of ours. `verifyResult` is what
/// OpenSSL found about the certificate (X509_V_...), `reply` the reply to the last command.
[[nodiscard]] FtpResult FailureOf(int curlCode, long verifyResult, const FtpReply& reply,
                                  std::string_view secret);

}  // namespace orma
