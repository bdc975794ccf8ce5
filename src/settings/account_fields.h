#pragma once

// The fields of one entry of the account tables, in the parts in which the configuration file
// stores them. Rows as in configuration_fields.inc.

#define ORMA_FTP_ACCESS                                                \
    FIELD_TEXT(Server, "", "host, optionally with a colon and a port") \
    FIELD_TEXT(User, "", "log-in name")                                \
    FIELD_SECRET(Password, "log-in password")                          \
    FIELD_TEXT(Folder, "", "remote folder; empty: the log-in folder")  \
    FIELD_BYTE(Passive, 0, 1, "1: passive data connections")

#define ORMA_FTP_NAME FIELD_TEXT(Name, "", "name under which the dialog offers the destination")

#define ORMA_FTP_SECURITY \
    FIELD_LONG(Security, 0, 2, "0 none, 1 explicit TLS required, 2 implicit TLS")

#define ORMA_SMTP_ACCESS                      \
    FIELD_TEXT(Server, "", "mail server")     \
    FIELD_TEXT(User, "", "log-in name")       \
    FIELD_SECRET(Password, "log-in password") \
    FIELD_LONG(Auth, 0, 1, "1: log in before sending")

#define ORMA_SMTP_CONNECTION                                                   \
    FIELD_TEXT(Name, "", "name of the account; empty: the server text serves") \
    FIELD_LONG(Port, 25, 65535, "TCP port")                                    \
    FIELD_LONG(Security, 0, 2, "0 none, 1 STARTTLS required, 2 implicit TLS")
