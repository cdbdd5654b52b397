#include "views/crew/ChatMessagesModel.h"

#include "views/components/Theme.h"
#include "views/crew/ChatText.h"

namespace ostrel {

namespace {

const QHash<int, QByteArray>& names()
{
    static const QHash<int, QByteArray> roles {
        {ChatMessagesModel::messageIdRole, "messageId"},
        {ChatMessagesModel::isMineRole, "isMine"},
        {ChatMessagesModel::senderTextRole, "senderText"},
        {ChatMessagesModel::timeTextRole, "timeText"},
        {ChatMessagesModel::cueTextRole, "cueText"},
        {ChatMessagesModel::textRole, "text"},
        {ChatMessagesModel::symbolRole, "symbol"},
        {ChatMessagesModel::isUrgentRole, "isUrgent"},
        {ChatMessagesModel::accessibleNameRole, "accessibleName"},
        {ChatMessagesModel::backgroundRoleRole, "backgroundRole"},
        {ChatMessagesModel::backgroundOpacityRole, "backgroundOpacity"},
        {ChatMessagesModel::usesWhiteTextRole, "usesWhiteText"},
        {ChatMessagesModel::showsGotItRole, "showsGotIt"},
        {ChatMessagesModel::seenByTextRole, "seenByText"},
    };
    return roles;
}

} // namespace

ChatMessagesModel::ChatMessagesModel(QObject* parent) : QAbstractListModel(parent) { }

void ChatMessagesModel::setCrew(CrewLink* value)
{
    if (crew_ == value) return;
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
    crew_ = value;
    if (crew_) {
        const auto update = [this] { reload(); };
        connections_.push_back(connect(crew_, &CrewLink::messagesChanged, this, update));
        connections_.push_back(connect(crew_, &CrewLink::stationNameChanged, this, update));
        connections_.push_back(connect(crew_, &QObject::destroyed, this, update));
    }
    reload();
    emit crewChanged();
}

QVariantMap ChatMessagesModel::bubble(const ChatMessage& message, const QString& station)
{
    const bool mine = message.sender == station;
    const Theme::Role background = message.isUrgent ? Theme::Role::red
        : mine                                      ? Theme::Role::accent
                                                    : Theme::Role::secondary;
    const double opacity = message.isUrgent ? 1.0 : mine ? 0.22 : 0.14;
    const QString sender = mine ? QStringLiteral("You") : message.sender;
    const QString urgentPrefix = message.isUrgent ? QStringLiteral("Urgent, ") : QString();
    return {
        {QStringLiteral("messageId"), message.id.toString(QUuid::WithoutBraces).toUpper()},
        {QStringLiteral("isMine"), mine},
        {QStringLiteral("senderText"), sender},
        {QStringLiteral("timeText"), ChatText::time(message.date)},
        {QStringLiteral("cueText"), ChatText::cueSuffix(message)},
        {QStringLiteral("text"), message.text},
        {QStringLiteral("symbol"), ChatText::symbol(message)},
        {QStringLiteral("isUrgent"), message.isUrgent},
        {QStringLiteral("accessibleName"),
            urgentPrefix + sender + QStringLiteral(": ") + message.text},
        {QStringLiteral("backgroundRole"), static_cast<int>(background)},
        {QStringLiteral("backgroundOpacity"), opacity},
        {QStringLiteral("usesWhiteText"), message.isUrgent},
        // The author never answers their own alert, and each station answers once.
        {QStringLiteral("showsGotIt"),
            message.isUrgent && !mine && !message.acknowledgedBy.contains(station)},
        {QStringLiteral("seenByText"), ChatText::seenBy(message)},
    };
}

QString ChatMessagesModel::lastMessageId() const
{
    return rows_.empty() ? QString() : rows_.back().value(QStringLiteral("messageId")).toString();
}

QVariantMap ChatMessagesModel::row(int index) const
{
    if (index < 0 || index >= count()) return {};
    return rows_[static_cast<std::size_t>(index)];
}

void ChatMessagesModel::acknowledge(const QString& id)
{
    const QUuid uuid = QUuid::fromString(id);
    if (crew_ && !uuid.isNull()) crew_->acknowledge(uuid);
}

void ChatMessagesModel::reload()
{
    std::vector<QVariantMap> rows;
    if (crew_) {
        rows.reserve(crew_->messages().size());
        for (const ChatMessage& message : crew_->messages())
            rows.push_back(bubble(message, crew_->stationName()));
    }
    if (rows == rows_) return;
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    emit contentChanged();
}

int ChatMessagesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ChatMessagesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= count()) return {};
    const auto name = names().value(role);
    if (name.isEmpty()) return {};
    return rows_[static_cast<std::size_t>(index.row())].value(QString::fromLatin1(name));
}

QHash<int, QByteArray> ChatMessagesModel::roleNames() const
{
    return names();
}

} // namespace ostrel
