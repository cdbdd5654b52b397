#pragma once

// Every preference of the station. Each assignment is written to the store at once; there is no
// Apply step and no separate save. Knows nothing of audio, QLab or the network: it only holds
// values, reads them once at construction, persists them and answers a few derived questions.
#include <optional>

#include <QObject>
#include <QSettings>
#include <QString>

#include "common/Date.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/LevelRange.h"
#include "measurement/MicrophoneCorrection.h"
#include "measurement/SpectrumResolution.h"
#include "measurement/TimeWeighting.h"
#include "model/AppearanceMode.h"
#include "model/SpectrumStyle.h"
#include "network/CrewRole.h"
#include "qlab/TimecodeRate.h"

namespace ostrel {

class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString inputDeviceUID READ inputDeviceUID WRITE setInputDeviceUID NOTIFY inputDeviceUIDChanged)
    Q_PROPERTY(qint64 inputChannel READ inputChannel WRITE setInputChannel NOTIFY inputChannelChanged)
    Q_PROPERTY(double calibrationOffset READ calibrationOffset WRITE setCalibrationOffset NOTIFY calibrationOffsetChanged)
    Q_PROPERTY(std::optional<Date> calibrationDate READ calibrationDate WRITE setCalibrationDate NOTIFY calibrationDateChanged)
    Q_PROPERTY(double calibratorReferenceLevel READ calibratorReferenceLevel WRITE setCalibratorReferenceLevel NOTIFY calibratorReferenceLevelChanged)
    Q_PROPERTY(std::optional<MicrophoneCorrection> microphoneCorrection READ microphoneCorrection WRITE setMicrophoneCorrection NOTIFY microphoneCorrectionChanged)
    Q_PROPERTY(FrequencyWeighting weighting READ weighting WRITE setWeighting NOTIFY weightingChanged)
    Q_PROPERTY(TimeWeighting response READ response WRITE setResponse NOTIFY responseChanged)
    Q_PROPERTY(bool qlabEnabled READ qlabEnabled WRITE setQlabEnabled NOTIFY qlabEnabledChanged)
    Q_PROPERTY(QString qlabHost READ qlabHost WRITE setQlabHost NOTIFY qlabHostChanged)
    Q_PROPERTY(qint64 qlabPort READ qlabPort WRITE setQlabPort NOTIFY qlabPortChanged)
    Q_PROPERTY(QString qlabPasscode READ qlabPasscode WRITE setQlabPasscode NOTIFY qlabPasscodeChanged)
    Q_PROPERTY(QString qlabWorkspace READ qlabWorkspace WRITE setQlabWorkspace NOTIFY qlabWorkspaceChanged)
    Q_PROPERTY(TimecodeRate timecodeFallbackRate READ timecodeFallbackRate WRITE setTimecodeFallbackRate NOTIFY timecodeFallbackRateChanged)
    Q_PROPERTY(AppearanceMode appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged)
    Q_PROPERTY(double graphDuration READ graphDuration WRITE setGraphDuration NOTIFY graphDurationChanged)
    Q_PROPERTY(double elevatedThreshold READ elevatedThreshold WRITE setElevatedThreshold NOTIFY elevatedThresholdChanged)
    Q_PROPERTY(double highThreshold READ highThreshold WRITE setHighThreshold NOTIFY highThresholdChanged)
    Q_PROPERTY(bool showModeShowsGraph READ showModeShowsGraph WRITE setShowModeShowsGraph NOTIFY showModeShowsGraphChanged)
    Q_PROPERTY(double screenBrightness READ screenBrightness WRITE setScreenBrightness NOTIFY screenBrightnessChanged)
    Q_PROPERTY(SpectrumResolution spectrumResolution READ spectrumResolution WRITE setSpectrumResolution NOTIFY spectrumResolutionChanged)
    Q_PROPERTY(SpectrumStyle spectrumStyle READ spectrumStyle WRITE setSpectrumStyle NOTIFY spectrumStyleChanged)
    Q_PROPERTY(bool feedbackWarningEnabled READ feedbackWarningEnabled WRITE setFeedbackWarningEnabled NOTIFY feedbackWarningEnabledChanged)
    Q_PROPERTY(bool danteMonitoringEnabled READ danteMonitoringEnabled WRITE setDanteMonitoringEnabled NOTIFY danteMonitoringEnabledChanged)
    Q_PROPERTY(bool danteDropoutFlash READ danteDropoutFlash WRITE setDanteDropoutFlash NOTIFY danteDropoutFlashChanged)
    Q_PROPERTY(bool unhingedMode READ unhingedMode WRITE setUnhingedMode NOTIFY unhingedModeChanged)
    Q_PROPERTY(bool micMonitoringEnabled READ micMonitoringEnabled WRITE setMicMonitoringEnabled NOTIFY micMonitoringEnabledChanged)
    Q_PROPERTY(bool micLowBatteryWarnings READ micLowBatteryWarnings WRITE setMicLowBatteryWarnings NOTIFY micLowBatteryWarningsChanged)
    Q_PROPERTY(CrewRole crewRole READ crewRole WRITE setCrewRole NOTIFY crewRoleChanged)
    Q_PROPERTY(QString stationName READ stationName WRITE setStationName NOTIFY stationNameChanged)
    Q_PROPERTY(QString crewPrimary READ crewPrimary WRITE setCrewPrimary NOTIFY crewPrimaryChanged)
    Q_PROPERTY(bool recordsLevelHistory READ recordsLevelHistory WRITE setRecordsLevelHistory NOTIFY recordsLevelHistoryChanged)
    Q_PROPERTY(bool recordsSessions READ recordsSessions WRITE setRecordsSessions NOTIFY recordsSessionsChanged)
    Q_PROPERTY(bool isCalibrated READ isCalibrated NOTIFY calibrationDateChanged)
    Q_PROPERTY(QString meterSetting READ meterSetting NOTIFY meterSettingChanged)

public:
    // The uncalibrated offset, which resetCalibration restores.
    static constexpr double uncalibratedOffset = 120.0;

    // Reads every key once; writes nothing until a property is assigned.
    explicit AppSettings(QSettings& store, QObject* parent = nullptr);

    QString inputDeviceUID() const { return inputDeviceUID_; }
    void setInputDeviceUID(const QString& value);
    qint64 inputChannel() const { return inputChannel_; }
    void setInputChannel(qint64 value);
    double calibrationOffset() const { return calibrationOffset_; }
    void setCalibrationOffset(double value);
    std::optional<Date> calibrationDate() const { return calibrationDate_; }
    void setCalibrationDate(const std::optional<Date>& value);
    double calibratorReferenceLevel() const { return calibratorReferenceLevel_; }
    void setCalibratorReferenceLevel(double value);
    std::optional<MicrophoneCorrection> microphoneCorrection() const { return microphoneCorrection_; }
    void setMicrophoneCorrection(const std::optional<MicrophoneCorrection>& value);
    FrequencyWeighting weighting() const { return weighting_; }
    void setWeighting(FrequencyWeighting value);
    TimeWeighting response() const { return response_; }
    void setResponse(TimeWeighting value);
    bool qlabEnabled() const { return qlabEnabled_; }
    void setQlabEnabled(bool value);
    QString qlabHost() const { return qlabHost_; }
    void setQlabHost(const QString& value);
    qint64 qlabPort() const { return qlabPort_; }
    void setQlabPort(qint64 value);
    QString qlabPasscode() const { return qlabPasscode_; }
    void setQlabPasscode(const QString& value);
    QString qlabWorkspace() const { return qlabWorkspace_; }
    void setQlabWorkspace(const QString& value);
    TimecodeRate timecodeFallbackRate() const { return timecodeFallbackRate_; }
    void setTimecodeFallbackRate(TimecodeRate value);
    AppearanceMode appearance() const { return appearance_; }
    void setAppearance(AppearanceMode value);
    double graphDuration() const { return graphDuration_; }
    void setGraphDuration(double value);
    double elevatedThreshold() const { return elevatedThreshold_; }
    void setElevatedThreshold(double value);
    double highThreshold() const { return highThreshold_; }
    void setHighThreshold(double value);
    bool showModeShowsGraph() const { return showModeShowsGraph_; }
    void setShowModeShowsGraph(bool value);
    double screenBrightness() const { return screenBrightness_; }
    void setScreenBrightness(double value);
    SpectrumResolution spectrumResolution() const { return spectrumResolution_; }
    void setSpectrumResolution(SpectrumResolution value);
    SpectrumStyle spectrumStyle() const { return spectrumStyle_; }
    void setSpectrumStyle(SpectrumStyle value);
    bool feedbackWarningEnabled() const { return feedbackWarningEnabled_; }
    void setFeedbackWarningEnabled(bool value);
    bool danteMonitoringEnabled() const { return danteMonitoringEnabled_; }
    void setDanteMonitoringEnabled(bool value);
    bool danteDropoutFlash() const { return danteDropoutFlash_; }
    void setDanteDropoutFlash(bool value);
    bool unhingedMode() const { return unhingedMode_; }
    void setUnhingedMode(bool value);
    bool micMonitoringEnabled() const { return micMonitoringEnabled_; }
    void setMicMonitoringEnabled(bool value);
    bool micLowBatteryWarnings() const { return micLowBatteryWarnings_; }
    void setMicLowBatteryWarnings(bool value);
    CrewRole crewRole() const { return crewRole_; }
    void setCrewRole(CrewRole value);
    QString stationName() const { return stationName_; }
    void setStationName(const QString& value);
    QString crewPrimary() const { return crewPrimary_; }
    void setCrewPrimary(const QString& value);
    bool recordsLevelHistory() const { return recordsLevelHistory_; }
    void setRecordsLevelHistory(bool value);
    bool recordsSessions() const { return recordsSessions_; }
    void setRecordsSessions(bool value);

    bool isCalibrated() const { return calibrationDate_.has_value(); }
    // "A / Fast": what sessions, cue records and the crew mirror carry as the meter setting.
    QString meterSetting() const;
    LevelRange levelRange(double level) const;
    void resetCalibration();

signals:
    void inputDeviceUIDChanged();
    void inputChannelChanged();
    void calibrationOffsetChanged();
    void calibrationDateChanged();
    void calibratorReferenceLevelChanged();
    void microphoneCorrectionChanged();
    void weightingChanged();
    void responseChanged();
    void qlabEnabledChanged();
    void qlabHostChanged();
    void qlabPortChanged();
    void qlabPasscodeChanged();
    void qlabWorkspaceChanged();
    void timecodeFallbackRateChanged();
    void appearanceChanged();
    void graphDurationChanged();
    void elevatedThresholdChanged();
    void highThresholdChanged();
    void showModeShowsGraphChanged();
    void screenBrightnessChanged();
    void spectrumResolutionChanged();
    void spectrumStyleChanged();
    void feedbackWarningEnabledChanged();
    void danteMonitoringEnabledChanged();
    void danteDropoutFlashChanged();
    void unhingedModeChanged();
    void micMonitoringEnabledChanged();
    void micLowBatteryWarningsChanged();
    void crewRoleChanged();
    void stationNameChanged();
    void crewPrimaryChanged();
    void recordsLevelHistoryChanged();
    void recordsSessionsChanged();
    void meterSettingChanged();

private:
    QSettings& store_;
    QString inputDeviceUID_ = QString();
    qint64 inputChannel_ = 0;
    double calibrationOffset_ = 120.0;
    std::optional<Date> calibrationDate_ = std::nullopt;
    double calibratorReferenceLevel_ = 94.0;
    std::optional<MicrophoneCorrection> microphoneCorrection_ = std::nullopt;
    FrequencyWeighting weighting_ = FrequencyWeighting::a;
    TimeWeighting response_ = TimeWeighting::fast;
    bool qlabEnabled_ = true;
    QString qlabHost_ = QStringLiteral("localhost");
    qint64 qlabPort_ = 53000;
    QString qlabPasscode_ = QString();
    QString qlabWorkspace_ = QString();
    TimecodeRate timecodeFallbackRate_ = TimecodeRate::fps25;
    AppearanceMode appearance_ = AppearanceMode::system;
    double graphDuration_ = 60.0;
    double elevatedThreshold_ = 85.0;
    double highThreshold_ = 95.0;
    bool showModeShowsGraph_ = true;
    double screenBrightness_ = 1.0;
    SpectrumResolution spectrumResolution_ = SpectrumResolution::third;
    SpectrumStyle spectrumStyle_ = SpectrumStyle::bars;
    bool feedbackWarningEnabled_ = true;
    bool danteMonitoringEnabled_ = true;
    bool danteDropoutFlash_ = true;
    bool unhingedMode_ = false;
    bool micMonitoringEnabled_ = true;
    bool micLowBatteryWarnings_ = true;
    CrewRole crewRole_ = CrewRole::standalone;
    QString stationName_ = QString();
    QString crewPrimary_ = QString();
    bool recordsLevelHistory_ = true;
    bool recordsSessions_ = true;
};

} // namespace ostrel
