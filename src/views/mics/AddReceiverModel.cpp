#include "views/mics/AddReceiverModel.h"

namespace ostrel {

AddReceiverModel::AddReceiverModel(QObject* parent) : ViewModel(parent) { }

void AddReceiverModel::setKindIndex(int value)
{
    if (value < 0 || value >= int(MicReceiverKinds::all.size())) return;
    const MicReceiverKind kind = MicReceiverKinds::all[size_t(value)];
    if (kind == kind_) return;
    kind_ = kind;
    emit formChanged();
}

void AddReceiverModel::setHost(const QString& value)
{
    if (value == host_) return;
    host_ = value;
    emit formChanged();
}

void AddReceiverModel::setLabel(const QString& value)
{
    if (value == label_) return;
    label_ = value;
    emit formChanged();
}

void AddReceiverModel::setPassword(const QString& value)
{
    if (value == password_) return;
    password_ = value;
    emit formChanged();
}

QStringList AddReceiverModel::kindTitles()
{
    QStringList titles;
    for (MicReceiverKind kind : MicReceiverKinds::all)
        titles.append(MicReceiverKinds::title(kind));
    return titles;
}

QString AddReceiverModel::hint(MicReceiverKind kind)
{
    if (kind == MicReceiverKind::g4) {
        return QStringLiteral("Works with EM 300-500 G4 receivers on firmware 1.7 or later. The "
                              "EM 100 G4 isn't supported.");
    }
    return QStringLiteral("In WSM, right-click the receiver and choose Enable 3rd Party Access to "
                          "set this password. Needs EW-DX firmware 4.0 or later.");
}

bool AddReceiverModel::add()
{
    if (!canAdd() || !mics_) return false;
    const MicReceiver receiver {QUuid::createUuid(), kind_, host_.trimmed(), label_.trimmed()};
    mics_->addReceiver(receiver,
        kind_ == MicReceiverKind::ewdx ? std::optional<QString>(password_) : std::nullopt);
    reset();
    return true;
}

void AddReceiverModel::reset()
{
    kind_ = MicReceiverKind::g4;
    host_.clear();
    label_.clear();
    password_.clear();
    emit formChanged();
}

} // namespace ostrel
