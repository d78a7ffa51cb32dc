#include "UpdateCheck.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QXmlStreamReader>

namespace UpdateCheck {

namespace {

struct Document
{
    QString version;
    QString download;
    QString error;
};

Document readDocument(const QByteArray& bytes)
{
    Document document;
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const auto name = xml.name();
        if (name == QLatin1String("Version") && document.version.isEmpty()) {
            document.version =
                xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (name == QLatin1String("Download") && document.download.isEmpty()) {
            document.download =
                xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        }
    }
    if (xml.hasError()) {
        document.error = xml.errorString();
    }
    return document;
}

} // namespace

bool isNewer(const QString& offered, const QString& installed)
{
    return offered.trimmed() > installed.trimmed();
}

Verdict evaluate(const QByteArray& bytes, const QUrl& documentUrl, const QString& installed)
{
    Verdict verdict;
    const Document document = readDocument(bytes);
    if (!document.error.isEmpty()) {
        verdict.message = QStringLiteral("The update document at %1 cannot be read: %2")
                              .arg(documentUrl.toDisplayString(), document.error);
        return verdict;
    }
    if (document.version.isEmpty()) {
        verdict.message = QStringLiteral("The update document at %1 names no version.")
                              .arg(documentUrl.toDisplayString());
        return verdict;
    }
    verdict.offeredVersion = document.version;
    if (!isNewer(document.version, installed)) {
        verdict.kind = Verdict::Kind::Current;
        verdict.message = QStringLiteral("No updates available");
        return verdict;
    }
    const QUrl link = QUrl(document.download);
    if (document.download.isEmpty() || !link.isValid()) {
        verdict.message = QStringLiteral("The update document at %1 names no download.")
                              .arg(documentUrl.toDisplayString());
        return verdict;
    }
    verdict.kind = Verdict::Kind::Newer;
    verdict.download = documentUrl.resolved(link);
    verdict.message =
        QStringLiteral("Korvelle") + document.version + QStringLiteral(" is available.");
    return verdict;
}

bool fetch(const QUrl& url, int timeoutMs, QByteArray* body, QString* error)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMs);
    QNetworkReply* reply = manager.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply->isFinished()) {
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    bool ok = false;
    if (!reply->isFinished()) { // the program is ending and the loop was told to stop
        reply->abort();
        *error = QStringLiteral("the request was interrupted");
    } else if (reply->error() == QNetworkReply::OperationCanceledError ||
               reply->error() == QNetworkReply::TimeoutError) {
        *error = QStringLiteral("no answer within %1 seconds").arg(timeoutMs / 1000.0);
    } else if (status != 0 && status != 200) {
        *error = QStringLiteral("the server answered %1").arg(status);
    } else if (reply->error() != QNetworkReply::NoError) {
        *error = reply->errorString();
    } else {
        *body = reply->readAll();
        ok = true;
    }
    return ok; // the manager deletes the reply
}

} // namespace UpdateCheck
