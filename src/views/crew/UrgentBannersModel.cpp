#include "views/crew/UrgentBannersModel.h"

#include <QVariantMap>

#include "views/crew/ChatText.h"

namespace ostrel {

namespace {

QString idText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

UrgentBannersModel::UrgentBannersModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void UrgentBannersModel::setScale(double value)
{
    if (value == scale_) return;
    scale_ = value;
    emit scaleChanged();
}

QString UrgentBannersModel::detail(const ChatMessage& message)
{
    return QStringLiteral("From ") + message.sender + QStringLiteral(" at ")
        + ChatText::time(message.date) + ChatText::cueSuffix(message);
}

QString UrgentBannersModel::announcement(const ChatMessage& message)
{
    return QStringLiteral("Urgent from ") + message.sender + QStringLiteral(": ") + message.text;
}

QVariantList UrgentBannersModel::banners(const std::vector<ChatMessage>& pending)
{
    QVariantList list;
    const std::size_t first = pending.size() > shownLimit ? pending.size() - shownLimit : 0;
    for (std::size_t index = first; index < pending.size(); ++index) {
        const ChatMessage& message = pending[index];
        list.append(QVariantMap {{QStringLiteral("messageId"), idText(message.id)},
            {QStringLiteral("symbol"), ChatText::symbol(message)},
            {QStringLiteral("text"), message.text}, {QStringLiteral("detail"), detail(message)}});
    }
    return list;
}

QString UrgentBannersModel::overflowText(int pending)
{
    if (pending <= shownLimit) return {};
    return QString::number(pending - shownLimit)
        + QStringLiteral(" more urgent messages in the chat");
}

void UrgentBannersModel::acknowledge(const QString& id)
{
    const QUuid uuid = QUuid::fromString(id);
    if (crew_ && !uuid.isNull()) crew_->acknowledge(uuid);
}

void UrgentBannersModel::attach()
{
    watch(crew_);
    // What is pending when the view appears is not news.
    pendingIds_.clear();
    if (crew_) {
        for (const ChatMessage& message : crew_->pendingUrgent())
            pendingIds_.append(idText(message.id));
        const auto update = [this] { refresh(); };
        track(connect(crew_, &CrewLink::messagesChanged, this, update));
        track(connect(crew_, &CrewLink::stationNameChanged, this, update));
    }
}

void UrgentBannersModel::refresh()
{
    const std::vector<ChatMessage> pending
        = crew_ ? crew_->pendingUrgent() : std::vector<ChatMessage> {};
    QStringList ids;
    QStringList announcements;
    for (const ChatMessage& message : pending) {
        const QString id = idText(message.id);
        ids.append(id);
        if (!pendingIds_.contains(id)) announcements.append(announcement(message));
    }
    pendingIds_ = ids;
    const QVariantList shown = banners(pending);
    const int count = static_cast<int>(pending.size());
    if (shown != banners_ || count != pendingCount_) {
        banners_ = shown;
        pendingCount_ = count;
        emit bannersChanged();
    }
    if (!announcements.isEmpty()) {
        announcements_ = announcements;
        for (const QString& line : announcements)
            emit announced(line);
    }
}

} // namespace ostrel
