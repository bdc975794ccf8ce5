#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/text.h"
#include "platform/keyed_hash.h"
#include "platform/mail_outbox.h"
#include "platform/patience.h"
#include "platform/tcp_connection.h"
#include "platform/tls_connection.h"
#include "platform/transport_security.h"
#include "stream/jstream_file.h"

namespace orma {

/// A mail server and how to log in there.
struct SmtpAccount {
    Text server = u"";
    int port = 25;
    TransportSecurity security = TransportSecurity::kNone;
    bool authenticate = false;
    Text user = u"";
    Text password = u"";
    Text caFile = u"";  // certificates to trust (PEM); empty: those of the system
};

/// One message with one attachment. Characters that would end a header line become blanks.
struct MailMessage {
    Text recipient;
    Text subject;
    Text sender;
    std::string body;  // Windows-1252, sent as it is
    Text attachmentName;
};

/// How a message travels.
struct MailDelivery {
    bool viaOutbox = false;   // to the user's mail program; otherwise straight to the server
    SmtpAccount account;      // for direct mail
    Text outboxFolder = u"";  // for the outbox: absolute; made when missing
};

/// A message that went via the outbox.
struct PostedMessage {
    Text path;                // of its ".eml" file
    bool handedOver = false;  // to the mail program; otherwise it only lies there
};

/// What all mail needs; everything outlives the streams.
struct MailServices {
    TcpConnections& tcp;
    TlsConnections& tls;
    KeyedHash& hash;
    MailOutbox& outbox;
    FileServices files;
    Patience& patience;
    std::uint32_t& bytesSent;  // counts what goes over any socket; never reset here
    std::vector<PostedMessage>* posted = nullptr;  // grows; null: nobody asks
};

}  // namespace orma
