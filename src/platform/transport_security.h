#pragma once

namespace orma {

/// How the connection to a server is protected; the numbers are those of the account tables.
/// Anything but kNone forbids clear text: where protection cannot be had, there is no connection.
enum class TransportSecurity {
    kNone = 0,      // clear text, the wire exactly as the plain protocol has it
    kUpgrade = 1,   // explicit: AUTH TLS (RFC 4217) or STARTTLS (RFC 3207) before the log-in
    kImplicit = 2,  // TLS from the first byte
};

}  // namespace orma
