#include "common/NaturalOrder.h"

namespace ostrel::NaturalOrder {

int compare(const QString& a, const QString& b)
{
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            // Compare whole digit runs by value: skip leading zeros, then length, then digits.
            qsizetype startA = i, startB = j;
            while (i < a.size() && a[i].isDigit())
                ++i;
            while (j < b.size() && b[j].isDigit())
                ++j;
            QStringView runA = QStringView(a).mid(startA, i - startA);
            QStringView runB = QStringView(b).mid(startB, j - startB);
            while (runA.size() > 1 && runA.front() == u'0')
                runA = runA.mid(1);
            while (runB.size() > 1 && runB.front() == u'0')
                runB = runB.mid(1);
            if (runA.size() != runB.size()) return runA.size() < runB.size() ? -1 : 1;
            if (const int order = runA.compare(runB); order != 0) return order;
            continue;
        }
        const QChar ca = a[i].toCaseFolded();
        const QChar cb = b[j].toCaseFolded();
        if (ca != cb) {
            const int order = QString::localeAwareCompare(QString(ca), QString(cb));
            if (order != 0) return order;
            return ca.unicode() < cb.unicode() ? -1 : 1;
        }
        ++i;
        ++j;
    }
    if (i < a.size()) return 1;
    if (j < b.size()) return -1;
    // Equal but for case: a stable, deterministic order.
    return QString::compare(a, b, Qt::CaseSensitive);
}

} // namespace ostrel::NaturalOrder
