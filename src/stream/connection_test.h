#pragma once

#include <functional>

#include "stream/ftp_session.h"

namespace orma {

/// Whether what a publication needs is there: for FTP (method 0) a log-in succeeds, for mail (any
/// other method) `mailServerAnswers` says so. That some place on the web can be reached would tell
/// less. Unless the manner is another, nothing is reported; the caller decides what to say.
/// Blocking, UI thread.
[[nodiscard]] bool TestConnection(int publishMethod, const FtpAccount& account,
                                  FtpServices services,
                                  const std::function<bool()>& mailServerAnswers,
                                  FtpManner manner = {.silent = true});

}  // namespace orma
