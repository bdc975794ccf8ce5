#include "stream/connection_test.h"

namespace orma {

bool TestConnection(int publishMethod, const FtpAccount& account, FtpServices services,
                    const std::function<bool()>& mailServerAnswers, FtpManner manner) {
    if (publishMethod != 0) return mailServerAnswers();
    return FtpSession(services, account, manner).IsConnected();
}

}  // namespace orma
