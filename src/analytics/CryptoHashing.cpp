#include "CryptoHashing.h"

#include <QCryptographicHash>

QString CryptoHashing::sha256(const QString &string, const QString &salt)
{
    return QString::fromLatin1(
        QCryptographicHash::hash((string + salt).toUtf8(), QCryptographicHash::Sha256).toHex());
}
