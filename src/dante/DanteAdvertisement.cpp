#include "dante/DanteAdvertisement.h"

namespace ostrel::DanteAdvertisement {

namespace {

template <typename Keys> std::optional<QString> firstPresent(const Txt& txt, const Keys& keys)
{
    for (const char* key : keys) {
        const auto found = txt.find(QString::fromLatin1(key));
        if (found == txt.end()) continue;
        QString value = found->second.trimmed();
        if (!value.isEmpty()) return value;
    }
    return std::nullopt;
}

} // namespace

DanteDetails details(const Txt& txt)
{
    return {firstPresent(txt, modelKeys), firstPresent(txt, manufacturerKeys),
        firstPresent(txt, firmwareKeys)};
}

} // namespace ostrel::DanteAdvertisement
