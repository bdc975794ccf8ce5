#include "stream/connection_test.h"

#include "stream/ftp_session.h"

namespace orma {

bool TestConnection(int publishMethod, const FtpAccount& account, FtpServices services,
                    const ReachesHost& reachesHost, const WebAddress& web) {
    if (publishMethod != 0) return reachesHost(web.host, web.port);
    return FtpSession(services, account, {.silent = true}).IsConnected();
}

}  // namespace orma
