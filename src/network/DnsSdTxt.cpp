#include "network/DnsSdTxt.h"

#include <QStringDecoder>

namespace ostrel::DnsSdTxt {

namespace {

bool isPrintableKey(QByteArrayView key)
{
    if (key.isEmpty()) return false;
    for (const char c : key)
        if (c < 0x20 || c > 0x7e) return false;
    return true;
}

} // namespace

std::map<QString, QString> map(const std::vector<QByteArray>& strings)
{
    std::map<QString, QString> result;
    for (const QByteArray& string : strings) {
        const qsizetype equals = string.indexOf('=');
        const QByteArrayView key
            = equals < 0 ? QByteArrayView(string) : QByteArrayView(string).first(equals);
        if (!isPrintableKey(key)) continue;
        const QString name = QString::fromLatin1(key).toLower();
        if (result.contains(name)) continue;
        QString value;
        if (equals >= 0) {
            QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            value = decoder.decode(QByteArrayView(string).sliced(equals + 1));
            if (decoder.hasError()) continue;
        }
        result.emplace(name, value);
    }
    return result;
}

} // namespace ostrel::DnsSdTxt
