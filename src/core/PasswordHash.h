#pragma once

#include <QString>

/** Salted password hashes; a password is never stored as typed. */
namespace PasswordHash {

/** A salted hash of the password, as text; empty when hashing failed. */
QString hash(const QString& password);
/** True when the password matches a hash made by hash(). */
bool verify(const QString& storedHash, const QString& password);
/** A password of the given length from letters and digits that cannot be mistaken. */
QString randomPassword(int length = 10);

} // namespace PasswordHash
