#include "views/spectrum/FeedbackWarningModel.h"

#include <QRandomGenerator>
#include <algorithm>

#include "views/components/FrequencyText.h"
#include "views/components/Theme.h"

namespace ostrel {

FeedbackWarningModel::FeedbackWarningModel(QObject* parent)
    : ViewModel(parent), chooser_([](int count) {
          return static_cast<int>(QRandomGenerator::global()->bounded(count));
      })
{
    refresh();
}

const QStringList& FeedbackWarningModel::unhingedTexts()
{
    static const QStringList texts {
        QStringLiteral("FEEDBACK, PULL THE FUCKING FADER"),
        QStringLiteral("Something's screaming like a goddamn kettle"),
        QStringLiteral("Oh shit, it's ringing"),
        QStringLiteral("Feedback. Who the fuck EQ'd this?"),
    };
    return texts;
}

int FeedbackWarningModel::colorRole() const
{
    return static_cast<int>(Theme::Role::orange);
}

void FeedbackWarningModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(meter_);
    watch(display_);
    if (meter_) track(connect(meter_, &MeterModel::feedbackWarningChanged, this, update));
    if (display_) track(connect(display_, &DisplaySettings::unhingedModeChanged, this, update));
}

void FeedbackWarningModel::refresh()
{
    const auto warning = meter_ ? meter_->feedbackWarning() : std::nullopt;
    QString text;
    QString spoken;
    if (warning) {
        // One outburst per warning: it does not change while the same tone rings.
        if (!drawnFor_ || drawnFor_->since != warning->since) {
            const int count = static_cast<int>(unhingedTexts().size());
            unhingedIndex_ = std::clamp(chooser_ ? chooser_(count) : 0, 0, count - 1);
        }
        const QString frequency = FrequencyText::hertz(warning->frequency);
        const bool unhinged = display_ && display_->unhingedMode();
        text = unhinged ? unhingedTexts().at(unhingedIndex_)
                        : QStringLiteral("Possible feedback \u00B7 ") + frequency;
        spoken = QStringLiteral("Possible feedback at ") + frequency;
    }
    drawnFor_ = warning;
    if (text == text_ && spoken == accessibleText_) return;
    text_ = text;
    accessibleText_ = spoken;
    emit warningChanged();
}

} // namespace ostrel
