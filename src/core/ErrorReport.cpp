#include "ErrorReport.h"

#include "Options.h"
#include "Session.h"
#include "Store.h"

#include <QLocale>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSysInfo>
#include <QUrl>
#include <QUuid>
#include <curl/curl.h>
#include <mutex>

namespace ErrorReport {

namespace {

const QString CrLf = QStringLiteral("\r\n");

/** The values of the three sections, in the order the report tells them. */
struct Values
{
    QStringList product;
    QStringList error;
    QStringList system;
};

Values valuesOf(const Details& d)
{
    return {
        {d.appVersion, d.dbVersion, d.mainApp},
        {d.dateTimeText, d.failure.module, d.failure.procedure, QString::number(d.failure.number),
         d.failure.description, QString::number(d.failure.line), d.userEmail, d.userMessage},
        {d.computerName, d.platform.name, d.platform.versionNumber, d.platform.servicePack},
    };
}

QString htmlItems(const QStringList& labels, const QStringList& values)
{
    QStringList parts;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        parts.append(QStringLiteral("<B>") + labels.at(i) + QStringLiteral("</B>") +
                     values.value(i).toHtmlEscaped());
    }
    return parts.join(QStringLiteral("<BR><BR>"));
}

QString plainItems(const QStringList& labels, const QStringList& values)
{
    QString text;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        text += labels.at(i) + values.value(i) + CrLf;
    }
    return text;
}

bool isAllowedCharacter(QChar c)
{
    const QChar lower = c.toLower();
    return (lower >= u'a' && lower <= u'z') || (c >= u'0' && c <= u'9') || c == u'-' || c == u'_' ||
           c == u'.' || c == u'@';
}

QString connectionName()
{
    return QStringLiteral("tandrill-error-report-") + QUuid::createUuid().toString(QUuid::Id128);
}

bool insertWith(const QSqlDatabase& db, const Details& d)
{
    QSqlQuery q(db);
    if (!q.prepare(QStringLiteral(
            "INSERT INTO tblError (ErrNumber, ErrDescription, LineNumber, UserMsg, ModuleName, "
            "ProcedureName, UserEmail, Username, APPversion, DBversion, WindowVersion, "
            "WinVersionNo, ServicePack, Reply, ErrdateTime) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"))) {
        return false;
    }
    const QVariantList values{d.failure.number,
                              d.failure.description,
                              d.failure.line,
                              d.userMessage,
                              d.failure.module,
                              d.failure.procedure,
                              d.userEmail,
                              d.computerName,
                              d.appVersion,
                              d.dbVersion,
                              d.platform.name,
                              d.platform.versionNumber,
                              d.platform.servicePack,
                              0,
                              d.moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))};
    for (const QVariant& value : values) {
        q.addBindValue(value);
    }
    return q.exec();
}

QByteArray base64Lines(const QByteArray& data)
{
    const QByteArray encoded = data.toBase64();
    QByteArray out;
    for (qsizetype i = 0; i < encoded.size(); i += 76) {
        out += encoded.mid(i, 76) + "\r\n";
    }
    return out;
}

QByteArray mailbox(const QString& displayName, const QString& address)
{
    return '"' + displayName.toUtf8() + "\" <" + address.toUtf8() + '>';
}

struct Upload
{
    QByteArray data;
    qsizetype position = 0;
};

size_t readChunk(char* buffer, size_t size, size_t count, void* userData)
{
    auto* upload = static_cast<Upload*>(userData);
    const qsizetype room = qsizetype(size * count);
    const qsizetype chunk = qMin(room, upload->data.size() - upload->position);
    if (chunk <= 0) {
        return 0;
    }
    memcpy(buffer, upload->data.constData() + upload->position, size_t(chunk));
    upload->position += chunk;
    return size_t(chunk);
}

int reportProgress(void* userData, curl_off_t, curl_off_t, curl_off_t uploadTotal,
                   curl_off_t uploadNow)
{
    const auto* progress = static_cast<const std::function<void(int)>*>(userData);
    if (*progress && uploadTotal > 0) {
        (*progress)(int(uploadNow * 100 / uploadTotal));
    }
    return 0;
}

void initCurlOnce()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

} // namespace

QString emailProblem(const QString& address)
{
    const QString text = address.trimmed();
    if (text.size() < 8) {
        return QStringLiteral("Too short");
    }
    const qsizetype at = text.indexOf(u'@');
    if (at < 0) {
        return QStringLiteral("Missing the @");
    }
    if (text.indexOf(u'@', at + 1) >= 0) {
        return QStringLiteral("Too many @");
    }
    if (!text.contains(u'.')) {
        return QStringLiteral("Missing the period");
    }
    if (text.front() == u'@' || text.front() == u'.' || text.back() == u'.') {
        return QStringLiteral("Invalid format");
    }
    for (const QChar c : text) {
        if (!isAllowedCharacter(c)) {
            return QStringLiteral("Invalid character");
        }
    }
    const qsizetype suffix = text.size() - text.lastIndexOf(u'.') - 1;
    if (suffix < 2) {
        return QStringLiteral("Suffix too short");
    }
    if (suffix > 4) {
        return QStringLiteral("Suffix too long");
    }
    return QString();
}

Details collect(Session& session, const Failure& failure, const QString& userMessage,
                const QString& userEmail)
{
    Details d;
    d.failure = failure;
    d.userMessage = userMessage;
    d.userEmail = userEmail.trimmed();
    d.moment = session.clock().now();
    const QLocale locale = QLocale::system();
    d.dateTimeText = locale.toString(d.moment.date(), QLocale::ShortFormat) + u' ' +
                     d.moment.time().toString(QStringLiteral("HH:mm:ss"));
    d.appVersion = Options::versionNo(session);
    d.dbVersion = Options::option(session, QStringLiteral("DBVERSION"));
    d.mainApp = Options::registryValue(session, QStringLiteral("MainApp"));
    d.computerName = qEnvironmentVariable("COMPUTERNAME");
    if (d.computerName.isEmpty()) {
        d.computerName = QSysInfo::machineHostName();
    }
    d.platform = session.platform();
    return d;
}

QString htmlBody(const Details& details)
{
    const Values v = valuesOf(details);
    const QString rule = QStringLiteral("------------------------------");
    const QString breaks = QStringLiteral("<BR><BR>");
    return QStringLiteral(" <Font Color=Red><B>") + rule + QStringLiteral("Product Information") +
           rule + QStringLiteral("</B></Font> ") + breaks +
           htmlItems({QStringLiteral(" App Version:- "), QStringLiteral(" DBVERSION:- "),
                      QStringLiteral(" MainApp:- ")},
                     v.product) +
           QStringLiteral(" <BR><BR> <Font color=Red><B>") + rule +
           QStringLiteral("Error Description") + rule + QStringLiteral("</B></Font>  ") + breaks +
           htmlItems({QStringLiteral(" Err DateTime:- "), QStringLiteral(" Module Name:-  "),
                      QStringLiteral(" Procedure Name:-  "), QStringLiteral(" Err No:-  "),
                      QStringLiteral(" Description:- "), QStringLiteral(" Line Number:- "),
                      QStringLiteral(" User Email:- "), QStringLiteral(" User Msg:- ")},
                     v.error) +
           QStringLiteral(" <BR><BR> <Font color=Red> <B>") + rule +
           QStringLiteral("Windows Information") + rule + QStringLiteral("</B></Font>  ") + breaks +
           htmlItems({QStringLiteral(" User Name:- "), QStringLiteral(" Windows Version:- "),
                      QStringLiteral(" Version number:- "),
                      QStringLiteral(" Service Pack/misc:- ")},
                     v.system);
}

QString plainBody(const Details& details)
{
    const Values v = valuesOf(details);
    return plainItems({QStringLiteral(" App Version:- "), QStringLiteral(" DBVERSION:- "),
                       QStringLiteral(" MainApp:-")},
                      v.product) +
           plainItems({QStringLiteral(" Err Date Time:- "), QStringLiteral(" Module Name:- "),
                       QStringLiteral(" Procedure Name:- "), QStringLiteral(" Err No:- "),
                       QStringLiteral(" Description:- "), QStringLiteral(" Line Number:-"),
                       QStringLiteral(" User Email:-"), QStringLiteral(" User Msg:- ")},
                      v.error) +
           plainItems({QStringLiteral(" User Name:- "), QStringLiteral(" Windows Version:-"),
                       QStringLiteral(" Version number:- "),
                       QStringLiteral(" Service Pack/misc:- ")},
                      v.system);
}

QString mailtoLink(const QString& recipient, const Details& details)
{
    // Each line is made safe for a link on its own (blanks stay readable; the
    // desktop encodes them), then the line breaks become "%0A".
    QStringList lines = plainBody(details).split(CrLf);
    for (QString& line : lines) {
        line = QString::fromLatin1(QUrl::toPercentEncoding(line, " :-/()@._"));
    }
    return QStringLiteral("mailto:") + recipient + QStringLiteral("?Subject=Error Report&Body=") +
           lines.join(QStringLiteral("%0A"));
}

MailEndpoint MailEndpoint::fromStore(const Store& store)
{
    const QString section = QString::fromLatin1(MailSection);
    MailEndpoint e;
    e.server = store.value(section, QStringLiteral("Server"));
    e.port = store.value(section, QStringLiteral("Port")).toInt();
    const QString tls = store.value(section, QStringLiteral("TLS")).toLower();
    e.tls = tls == QLatin1String("ssl")        ? Tls::Ssl
            : tls == QLatin1String("starttls") ? Tls::StartTls
                                               : Tls::None;
    e.account = store.value(section, QStringLiteral("Account"));
    e.password = store.value(section, QStringLiteral("Password"));
    e.sender = store.value(section, QStringLiteral("Sender"));
    e.recipient = store.value(section, QStringLiteral("Recipient"));
    return e;
}

QStringList MailEndpoint::recipients() const
{
    QStringList list;
    for (const QString& part : recipient.split(u';', Qt::SkipEmptyParts)) {
        if (!part.trimmed().isEmpty()) {
            list.append(part.trimmed());
        }
    }
    return list;
}

int MailEndpoint::effectivePort() const
{
    if (port > 0) {
        return port;
    }
    switch (tls) {
    case Tls::Ssl:
        return 465;
    case Tls::StartTls:
        return 587;
    case Tls::None:
        break;
    }
    return 25;
}

ConnectionSettings reportDatabase(const Store& store)
{
    return ConnectionSettings::postgresFromStore(store, QString::fromLatin1(DatabaseSection));
}

bool isConfigured(const ConnectionSettings& database)
{
    return database.engine == SqlDialect::Engine::PostgreSQL && !database.host.isEmpty() &&
           !database.databaseName.isEmpty();
}

bool insertRemote(const ConnectionSettings& database, const Details& details)
{
    if (!isConfigured(database)) {
        return false;
    }
    const QString name = connectionName();
    DatabaseError ignored;
    if (!Database::openForCreate(database, name, &ignored)) {
        return false;
    }
    const bool ok = insertWith(QSqlDatabase::database(name, false), details);
    Database::close(name);
    return ok;
}

QByteArray mailMessage(const MailEndpoint& endpoint, const Details& details)
{
    const QString from = endpoint.sender.isEmpty() ? details.userEmail : endpoint.sender;
    QByteArrayList to;
    for (const QString& r : endpoint.recipients()) {
        to.append(mailbox(QStringLiteral("Tandrill--Administrator"), r));
    }
    QByteArray m;
    m += "Date: " + details.moment.toString(Qt::RFC2822Date).toUtf8() + "\r\n";
    m += "From: " + mailbox(QStringLiteral("User---") + details.userEmail, from) + "\r\n";
    if (from != details.userEmail) {
        m += "Reply-To: <" + details.userEmail.toUtf8() + ">\r\n";
    }
    m += "To: " + to.join(", ") + "\r\n";
    m += QByteArray("Subject: ") + Subject + "\r\n";
    m += "MIME-Version: 1.0\r\n";
    m += "Content-Type: text/html; charset=UTF-8\r\n";
    m += "Content-Transfer-Encoding: base64\r\n";
    m += "\r\n";
    m += base64Lines(htmlBody(details).toUtf8());
    return m;
}

bool sendMail(const MailEndpoint& endpoint, const Details& details, QString* error,
              const std::function<void(int)>& progress)
{
    if (!endpoint.isComplete()) {
        if (error) {
            *error = QStringLiteral("No mail server is set up.");
        }
        return false;
    }
    initCurlOnce();
    CURL* curl = curl_easy_init();
    if (!curl) {
        if (error) {
            *error = QStringLiteral("The mail could not be prepared.");
        }
        return false;
    }
    const QString scheme =
        endpoint.tls == MailEndpoint::Tls::Ssl ? QStringLiteral("smtps") : QStringLiteral("smtp");
    const QByteArray url = QStringLiteral("%1://%2:%3")
                               .arg(scheme, endpoint.server)
                               .arg(endpoint.effectivePort())
                               .toUtf8();
    const QString envelopeFrom = endpoint.sender.isEmpty() ? details.userEmail : endpoint.sender;
    const QByteArray mailFrom = '<' + envelopeFrom.toUtf8() + '>';
    const QByteArray account = endpoint.account.toUtf8();
    const QByteArray password = endpoint.password.toUtf8();
    curl_slist* recipients = nullptr;
    QByteArrayList rcpt;
    for (const QString& r : endpoint.recipients()) {
        rcpt.append('<' + r.toUtf8() + '>');
        recipients = curl_slist_append(recipients, rcpt.last().constData());
    }
    Upload upload{mailMessage(endpoint, details)};
    char reason[CURL_ERROR_SIZE] = {};

    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, reason);
    if (endpoint.tls == MailEndpoint::Tls::StartTls) {
        curl_easy_setopt(curl, CURLOPT_USE_SSL, long(CURLUSESSL_ALL));
    }
    if (!account.isEmpty()) {
        curl_easy_setopt(curl, CURLOPT_USERNAME, account.constData());
        curl_easy_setopt(curl, CURLOPT_PASSWORD, password.constData());
    }
    curl_easy_setopt(curl, CURLOPT_MAIL_FROM, mailFrom.constData());
    curl_easy_setopt(curl, CURLOPT_MAIL_RCPT, recipients);
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, readChunk);
    curl_easy_setopt(curl, CURLOPT_READDATA, &upload);
    curl_easy_setopt(curl, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(curl, CURLOPT_INFILESIZE_LARGE, curl_off_t(upload.data.size()));
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, 100L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, 300L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, reportProgress);
    curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &progress);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);

    const CURLcode result = curl_easy_perform(curl);
    curl_slist_free_all(recipients);
    curl_easy_cleanup(curl);
    if (result != CURLE_OK) {
        if (error) {
            *error = reason[0] ? QString::fromUtf8(reason)
                               : QString::fromUtf8(curl_easy_strerror(result));
        }
        return false;
    }
    return true;
}

} // namespace ErrorReport
