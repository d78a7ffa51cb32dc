#pragma once

#include "Database.h"

#include "Failure.h"
#include "PlatformInfo.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

class Session;
class Store;

/**
 * The error report a user sends to the maker: the check of the user's
 * address, the mail's HTML body, the plain-text fallback handed to the
 * desktop's mail program, the row in the maker's remote error table, and
 * the mail itself. The endpoints stand in the store; without them reports
 * stay in tblErrorList only.
 */
namespace ErrorReport {

/** Why an address fails the check ("Too short", "Missing the @", ...); empty when it passes. */
QString emailProblem(const QString& address);
inline bool isValidEmail(const QString& address)
{
    return emailProblem(address).isEmpty();
}

/** Everything a report tells about one failure. */
struct Details
{
    Failure failure;
    QString userMessage;
    QString userEmail;
    QDateTime moment;
    QString dateTimeText; ///< the moment as the user reads it
    QString appVersion;
    QString dbVersion;
    QString mainApp;
    QString computerName;
    PlatformInfo platform;
};

/** Gathers a report now: versions from the store and options, the machine and its system. */
Details collect(Session& session, const Failure& failure, const QString& userMessage,
                const QString& userEmail);

/** The mail's HTML body: product, error and system sections, each label bold. */
QString htmlBody(const Details& details);
/** The same items as plain text, one a line, each line ending in "\r\n". */
QString plainBody(const Details& details);
/** "mailto:" + recipient + "?Subject=Error Report&Body=" + the plain body, lines joined by "%0A".
 */
QString mailtoLink(const QString& recipient, const Details& details);

/** The maker's mailbox, from the store's [Mail] section. */
struct MailEndpoint
{
    enum class Tls { None, StartTls, Ssl };

    QString server;
    int port = 0;
    Tls tls = Tls::None;
    QString account;
    QString password;
    QString sender;    ///< envelope sender when the server refuses the user's own address
    QString recipient; ///< one or more addresses separated by ";"

    static MailEndpoint fromStore(const Store& store);
    /** True when a server and a recipient are set. */
    bool isComplete() const { return !server.isEmpty() && !recipients().isEmpty(); }
    QStringList recipients() const;
    /** The port given, else the usual one for the kind of connection. */
    int effectivePort() const;
};

/** The maker's error database: the store's [ErrorReportDatabase] section, on PostgreSQL. */
ConnectionSettings reportDatabase(const Store& store);
/** True when a server and a database name are set. */
bool isConfigured(const ConnectionSettings& database);

inline constexpr auto MailSection = "Mail";
inline constexpr auto DatabaseSection = "ErrorReportDatabase";
inline constexpr auto Subject = "Error Report";

/**
 * Adds the report to the remote tblError with Reply 0. A report that
 * cannot go there is dropped without a word: the mail still goes. True
 * when the row was written. Safe to call from a worker thread.
 */
bool insertRemote(const ConnectionSettings& database, const Details& details);

/** The whole mail as it goes over the wire: headers and a base64 HTML body. */
QByteArray mailMessage(const MailEndpoint& endpoint, const Details& details);

/**
 * Sends the mail and waits for the server's answer. progress, when given,
 * hears the share sent in percent. False with a reason when it did not go.
 * Blocks: run it away from the screen's thread.
 */
bool sendMail(const MailEndpoint& endpoint, const Details& details, QString* error,
              const std::function<void(int)>& progress = {});

} // namespace ErrorReport
