#include "updates/Appcast.h"

#include <QDateTime>
#include <QUrl>
#include <QXmlStreamReader>

#include "updates/AppVersion.h"

namespace ostrel::Appcast {

namespace {

constexpr QLatin1StringView thisSystem("linux");

struct ItemReading {
    AppcastItem item;
    QString link;
    QString enclosure;
    QString enclosureVersion;
    QString enclosureDisplayVersion;
    bool elsewhere = false; // for another system or another channel
};

bool isWebAddress(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && (url.scheme() == u"https" || url.scheme() == u"http")
        && !url.host().isEmpty();
}

std::optional<Date> rfc822Date(const QString& text)
{
    const QDateTime parsed = QDateTime::fromString(text.trimmed(), Qt::RFC2822Date);
    if (!parsed.isValid()) return std::nullopt;
    return Date(std::chrono::milliseconds(parsed.toMSecsSinceEpoch()));
}

void readEnclosure(QXmlStreamReader& xml, ItemReading& reading)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    const QString os = attributes.value(sparkleNamespace, "os").toString().trimmed();
    if (!os.isEmpty() && os.compare(thisSystem, Qt::CaseInsensitive) != 0) {
        reading.elsewhere = true;
    } else {
        reading.enclosure = attributes.value("url").toString().trimmed();
        reading.enclosureVersion
            = attributes.value(sparkleNamespace, "version").toString().trimmed();
        reading.enclosureDisplayVersion
            = attributes.value(sparkleNamespace, "shortVersionString").toString().trimmed();
    }
    xml.skipCurrentElement();
}

std::optional<AppcastItem> readItem(QXmlStreamReader& xml)
{
    ItemReading reading;
    while (xml.readNextStartElement()) {
        const auto name = xml.name();
        const bool sparkle = xml.namespaceUri() == QLatin1StringView(sparkleNamespace);
        if (name == u"enclosure") {
            readEnclosure(xml, reading);
        } else if (!sparkle && name == u"title") {
            reading.item.title = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        } else if (!sparkle && name == u"link") {
            reading.link = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        } else if (!sparkle && name == u"pubDate") {
            reading.item.published
                = rfc822Date(xml.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (sparkle && name == u"version") {
            reading.item.version
                = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        } else if (sparkle && name == u"shortVersionString") {
            reading.item.displayVersion
                = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        } else if (sparkle && name == u"releaseNotesLink") {
            reading.item.releaseNotes
                = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        } else if (sparkle && name == u"channel") {
            reading.elsewhere = true;
            xml.skipCurrentElement();
        } else {
            xml.skipCurrentElement();
        }
    }
    if (reading.elsewhere) return std::nullopt;
    AppcastItem item = std::move(reading.item);
    if (item.version.isEmpty()) item.version = reading.enclosureVersion;
    if (item.displayVersion.isEmpty()) item.displayVersion = reading.enclosureDisplayVersion;
    if (item.displayVersion.isEmpty()) item.displayVersion = item.version;
    item.downloadPage = isWebAddress(reading.link) ? reading.link
        : isWebAddress(reading.enclosure)          ? reading.enclosure
                                                   : QString();
    if (!isWebAddress(item.releaseNotes)) item.releaseNotes.clear();
    if (item.version.isEmpty() || item.downloadPage.isEmpty()) return std::nullopt;
    return item;
}

} // namespace

std::variant<std::vector<AppcastItem>, QString> parse(const QByteArray& body)
{
    if (body.size() > maximumBytes) return QStringLiteral("The update feed is too large.");
    QXmlStreamReader xml(body);
    if (!xml.readNextStartElement() || xml.name() != u"rss")
        return QStringLiteral("The update feed isn't an appcast.");
    std::vector<AppcastItem> items;
    bool sawChannel = false;
    while (xml.readNextStartElement()) {
        if (xml.name() != u"channel") {
            xml.skipCurrentElement();
            continue;
        }
        sawChannel = true;
        while (xml.readNextStartElement()) {
            if (xml.name() == u"item") {
                if (auto item = readItem(xml)) items.push_back(std::move(*item));
            } else {
                xml.skipCurrentElement();
            }
        }
    }
    if (xml.hasError())
        return QStringLiteral("The update feed can't be read: %1.").arg(xml.errorString());
    if (!sawChannel) return QStringLiteral("The update feed isn't an appcast.");
    return items;
}

std::optional<AppcastItem> newest(const std::vector<AppcastItem>& items, const QString& current)
{
    const AppcastItem* best = nullptr;
    for (const AppcastItem& item : items) {
        if (AppVersion::compare(item.version, current) <= 0) continue;
        if (!best || AppVersion::compare(item.version, best->version) > 0) best = &item;
    }
    if (!best) return std::nullopt;
    return *best;
}

} // namespace ostrel::Appcast
