#pragma once

// The quick alerts under the chat: one button per alert, red for the urgent ones, and a picker of
// the radio mic that "Mic dead" and "Swapping pack" name. With nobody to hear them (no secondary
// attached, or no primary in hand) the buttons are off.
#include <QPointer>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "network/QuickAlert.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class QuickAlertBarModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    // The radio mics' names, mirrored or local.
    Q_PROPERTY(QStringList micNames READ micNames WRITE setMicNames NOTIFY micNamesChanged)
    Q_PROPERTY(QString cueLabel READ cueLabel WRITE setCueLabel NOTIFY cueLabelChanged)
    Q_PROPERTY(QString micName READ micName WRITE setMicName NOTIFY micNameChanged)
    Q_PROPERTY(int micIndex READ micIndex WRITE setMicIndex NOTIFY micNameChanged)
    Q_PROPERTY(QStringList micChoices READ micChoices NOTIFY micNamesChanged)
    Q_PROPERTY(bool showsMicPicker READ showsMicPicker NOTIFY micNamesChanged)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY isEnabledChanged)
    Q_PROPERTY(QVariantList alerts READ alerts CONSTANT)
    Q_PROPERTY(QString heading READ heading CONSTANT)
    Q_PROPERTY(QString micPickerHelp READ micPickerHelp CONSTANT)
    Q_PROPERTY(QString noMicNamesText READ noMicNamesText CONSTANT)
    Q_PROPERTY(double spacing READ spacing CONSTANT)

public:
    explicit QuickAlertBarModel(QObject* parent = nullptr);

    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &QuickAlertBarModel::crewChanged); }
    QStringList micNames() const { return micNames_; }
    void setMicNames(const QStringList& value);
    QString cueLabel() const { return cueLabel_; }
    void setCueLabel(const QString& value);
    QString micName() const { return micName_; }
    void setMicName(const QString& value);
    // 0 is "No mic", then the names in order.
    int micIndex() const;
    void setMicIndex(int index);
    QStringList micChoices() const;
    bool showsMicPicker() const { return !micNames_.isEmpty(); }

    // Only a sharing primary or a connected secondary reaches anyone.
    static bool isEnabled(CrewLink::StatusKind status);
    static QString help(QuickAlert alert);

    bool isEnabled() const { return isEnabled_; }
    QVariantList alerts() const;
    QString heading() const { return QStringLiteral("Quick alerts"); }
    QString micPickerHelp() const
    {
        return QStringLiteral("The radio mic for Mic dead and Swapping pack");
    }
    QString noMicNamesText() const
    {
        return QStringLiteral(
            "Mic names appear once Ostrel Live is watching your Sennheiser receivers");
    }
    double spacing() const { return 6.0; }

    // The alert at `index` of `alerts`, naming the chosen mic if it takes one.
    Q_INVOKABLE void send(int index);

signals:
    void crewChanged();
    void micNamesChanged();
    void cueLabelChanged();
    void micNameChanged();
    void isEnabledChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<CrewLink> crew_;
    QStringList micNames_;
    QString cueLabel_;
    QString micName_;
    bool isEnabled_ = false;
};

} // namespace ostrel
