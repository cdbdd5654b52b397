#pragma once

// The calibration assistant: four pages that lead the user to seal the microphone in an acoustic
// calibrator, a measuring page with progress, and the result. Nothing is stored until "Done";
// feedback detection pauses while the assistant is open.
#include <optional>

#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "measurement/CalibrationCollector.h"
#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CalibrationAssistantModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(Step step READ step NOTIFY pageChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY pageChanged)
    Q_PROPERTY(int symbolColorRole READ symbolColorRole NOTIFY pageChanged)
    Q_PROPERTY(QString title READ title NOTIFY pageChanged)
    Q_PROPERTY(QString text READ text NOTIFY pageChanged)
    Q_PROPERTY(QString primaryTitle READ primaryTitle NOTIFY pageChanged)
    Q_PROPERTY(bool primaryEnabled READ primaryEnabled NOTIFY pageChanged)
    Q_PROPERTY(QString cancelTitle READ cancelTitle CONSTANT)
    Q_PROPERTY(bool showsInputPicker READ showsInputPicker NOTIFY pageChanged)
    Q_PROPERTY(bool showsReferenceField READ showsReferenceField NOTIFY pageChanged)
    Q_PROPERTY(bool showsProgress READ showsProgress NOTIFY pageChanged)
    Q_PROPERTY(bool showsResult READ showsResult NOTIFY pageChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString offsetCaption READ offsetCaption CONSTANT)
    Q_PROPERTY(QString offsetText READ offsetText NOTIFY pageChanged)
    Q_PROPERTY(QString measuredCaption READ measuredCaption CONSTANT)
    Q_PROPERTY(QString measuredText READ measuredText NOTIFY pageChanged)
    Q_PROPERTY(QString referenceCaption READ referenceCaption CONSTANT)
    Q_PROPERTY(QString referenceUnit READ referenceUnit CONSTANT)
    Q_PROPERTY(double referenceLevel READ referenceLevel WRITE setReferenceLevel NOTIFY
            referenceLevelChanged)

public:
    enum class Step { connect, insert, calibrate, measuring, finished };
    Q_ENUM(Step)

    static constexpr double defaultDuration = 4.0;

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value);

    explicit CalibrationAssistantModel(QObject* parent = nullptr);
    ~CalibrationAssistantModel() override;

    // "+117.0 dB": a sign always, also for zero.
    static QString offsetText(double offset);

    // How long a measurement listens; tests shorten it.
    void setDuration(double seconds) { duration_ = seconds; }
    double duration() const { return duration_; }

    Q_INVOKABLE void open();
    // The page's primary button: on to the next page, measure, "Done" or "Try Again".
    Q_INVOKABLE void primary();
    // Closes at any step, ends a measurement and stores nothing.
    Q_INVOKABLE void cancel();

    bool isOpen() const { return isOpen_; }
    Step step() const { return step_; }
    const std::optional<CalibrationResult>& result() const { return result_; }
    QString symbol() const;
    int symbolColorRole() const;
    QString title() const;
    QString text() const;
    QString primaryTitle() const;
    bool primaryEnabled() const { return step_ != Step::measuring; }
    QString cancelTitle() const { return QStringLiteral("Cancel"); }
    bool showsInputPicker() const { return step_ == Step::connect; }
    bool showsReferenceField() const { return step_ == Step::calibrate; }
    bool showsProgress() const { return step_ == Step::measuring; }
    bool showsResult() const { return isSuccess(); }
    double progress() const { return progress_; }
    QString offsetCaption() const { return QStringLiteral("Calibration offset"); }
    QString offsetText() const;
    QString measuredCaption() const { return QStringLiteral("Measured"); }
    QString measuredText() const;
    QString referenceCaption() const { return QStringLiteral("Reference level"); }
    QString referenceUnit() const { return QStringLiteral("dB SPL"); }
    double referenceLevel() const;
    void setReferenceLevel(double value);

signals:
    void appModelChanged();
    void isOpenChanged();
    void pageChanged();
    void progressChanged();
    void referenceLevelChanged();

protected:
    void attach() override;

private:
    bool isSuccess() const;
    void measure();
    void close();
    void setStep(Step step);
    void setProgress(double value);

    QPointer<AppModel> appModel_;
    bool isOpen_ = false;
    Step step_ = Step::connect;
    std::optional<CalibrationResult> result_;
    double progress_ = 0.0;
    double duration_ = defaultDuration;
    // Each measurement's number: the completion of one that was cancelled is not taken.
    int measurement_ = 0;
    std::optional<double> measuredReference_;
};

} // namespace ostrel
