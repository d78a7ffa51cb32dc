#include "PasswordHash.h"

#include <sodium.h>

namespace PasswordHash {

namespace {

bool ready()
{
    static const bool initialised = sodium_init() >= 0;
    return initialised;
}

} // namespace

QString hash(const QString& password)
{
    if (!ready()) {
        return QString();
    }
    const QByteArray utf8 = password.toUtf8();
    char out[crypto_pwhash_STRBYTES];
    // Interactive limits: a login must answer at once on an office machine.
    if (crypto_pwhash_str(out, utf8.constData(), utf8.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0) {
        return QString();
    }
    return QString::fromLatin1(out);
}

bool verify(const QString& storedHash, const QString& password)
{
    if (!ready() || storedHash.isEmpty()) {
        return false;
    }
    const QByteArray utf8 = password.toUtf8();
    return crypto_pwhash_str_verify(storedHash.toLatin1().constData(), utf8.constData(),
                                    utf8.size()) == 0;
}

QString randomPassword(int length)
{
    static const char alphabet[] = "abcdefghjkmnpqrstuvwxyzABCDEFGHJKMNPQRSTUVWXYZ23456789";
    QString result;
    if (!ready()) {
        return result;
    }
    for (int i = 0; i < length; ++i) {
        result.append(QLatin1Char(alphabet[randombytes_uniform(sizeof(alphabet) - 1)]));
    }
    return result;
}

} // namespace PasswordHash
