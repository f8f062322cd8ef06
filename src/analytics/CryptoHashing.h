#pragma once

#include <QString>

// Salted hashes, so that no raw identifier leaves the machine.
class CryptoHashing {
public:
    // SHA-256 of the UTF-8 bytes of string followed by salt, as 64 lower-case hex digits.
    static QString sha256(const QString &string, const QString &salt);
};
