#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

/**
 * Check For Updates without a screen: fetch the update document, read the
 * version it offers and tell whether that is newer than the installed one.
 *
 * The document is XML with a Version and a Download element anywhere in it:
 *
 *     <Korvelle><Version>2.3.0</Version><Download>setup/Korvelle-2.3.0.run</Download></Korvelle>
 *
 * A relative download link is taken relative to the document's own address.
 */
namespace UpdateCheck {

struct Verdict
{
    enum class Kind { Newer, Current, Invalid };
    Kind kind = Kind::Invalid;
    QString offeredVersion;
    QUrl download;
    /** What the user is told: the offer, "No updates available", or why the document is unusable.
     */
    QString message;
};

/**
 * True when offered is greater than installed as plain text, both trimmed:
 * versions are compared the way the program always has, so "10.0" is below "9.0".
 */
bool isNewer(const QString& offered, const QString& installed);

/** Reads the document fetched from documentUrl and judges it against the installed version. */
Verdict evaluate(const QByteArray& document, const QUrl& documentUrl, const QString& installed);

/**
 * Fetches url with a GET and waits for it in a local loop that takes no
 * user input, at most timeoutMs. False with a reason on any failure.
 */
bool fetch(const QUrl& url, int timeoutMs, QByteArray* body, QString* error);

} // namespace UpdateCheck
