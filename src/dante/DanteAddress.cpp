#include "dante/DanteAddress.h"

namespace ostrel::DanteAddress {

QString describe(const QString& address)
{
    const qsizetype zone = address.indexOf(u'%');
    return zone < 0 ? address : address.left(zone);
}

} // namespace ostrel::DanteAddress
