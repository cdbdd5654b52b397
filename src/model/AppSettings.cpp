#include "model/AppSettings.h"

#include <algorithm>

#include "model/SettingsStore.h"

namespace ostrel {

AppSettings::AppSettings(QSettings& store, QObject* parent) : QObject(parent), store_(store)
{
    const SettingsStore read(store_);
    inputDeviceUID_ = read.readString("inputDeviceUID", inputDeviceUID_);
    inputChannel_ = read.readInteger("inputChannel", inputChannel_);
    calibrationOffset_ = read.readDouble("calibrationOffset", calibrationOffset_);
    calibrationDate_ = read.readDate("calibrationDate", calibrationDate_);
    calibratorReferenceLevel_ = read.readDouble("calibratorReferenceLevel", calibratorReferenceLevel_);
    microphoneCorrection_ = read.readCorrection("microphoneCorrection", microphoneCorrection_);
    weighting_ = read.readWeighting("weighting", weighting_);
    response_ = read.readResponse("response", response_);
    qlabEnabled_ = read.readBool("qlabEnabled", qlabEnabled_);
    qlabHost_ = read.readString("qlabHost", qlabHost_);
    qlabPort_ = read.readInteger("qlabPort", qlabPort_);
    qlabPasscode_ = read.readString("qlabPasscode", qlabPasscode_);
    qlabWorkspace_ = read.readString("qlabWorkspace", qlabWorkspace_);
    timecodeFallbackRate_ = read.readTimecodeRate("timecodeFallbackRate", timecodeFallbackRate_);
    appearance_ = read.readAppearance("appearance", appearance_);
    graphDuration_ = read.readDouble("graphDuration", graphDuration_);
    elevatedThreshold_ = read.readDouble("elevatedThreshold", elevatedThreshold_);
    highThreshold_ = read.readDouble("highThreshold", highThreshold_);
    showModeShowsGraph_ = read.readBool("showModeShowsGraph", showModeShowsGraph_);
    screenBrightness_ = SettingsStore::clampedBrightness(read.readDouble("screenBrightness", screenBrightness_));
    spectrumResolution_ = read.readResolution("spectrumResolution", spectrumResolution_);
    spectrumStyle_ = read.readStyle("spectrumStyle", spectrumStyle_);
    feedbackWarningEnabled_ = read.readBool("feedbackWarningEnabled", feedbackWarningEnabled_);
    danteMonitoringEnabled_ = read.readBool("danteMonitoringEnabled", danteMonitoringEnabled_);
    danteDropoutFlash_ = read.readBool("danteDropoutFlash", danteDropoutFlash_);
    unhingedMode_ = read.readBool("unhingedMode", unhingedMode_);
    micMonitoringEnabled_ = read.readBool("micMonitoringEnabled", micMonitoringEnabled_);
    micLowBatteryWarnings_ = read.readBool("micLowBatteryWarnings", micLowBatteryWarnings_);
    crewRole_ = read.readCrewRole("crewRole", crewRole_);
    stationName_ = read.readString("stationName", stationName_);
    crewPrimary_ = read.readString("crewPrimary", crewPrimary_);
    recordsLevelHistory_ = read.readBool("recordsLevelHistory", recordsLevelHistory_);
    recordsSessions_ = read.readBool("recordsSessions", recordsSessions_);
}

void AppSettings::setInputDeviceUID(const QString& value)
{
    if (value != inputDeviceUID_) {
        inputDeviceUID_ = value;
        emit inputDeviceUIDChanged();
    }
    SettingsStore(store_).write("inputDeviceUID", value);
}

void AppSettings::setInputChannel(qint64 value)
{
    if (value != inputChannel_) {
        inputChannel_ = value;
        emit inputChannelChanged();
    }
    SettingsStore(store_).write("inputChannel", value);
}

void AppSettings::setCalibrationOffset(double value)
{
    if (value != calibrationOffset_) {
        calibrationOffset_ = value;
        emit calibrationOffsetChanged();
    }
    SettingsStore(store_).write("calibrationOffset", value);
}

void AppSettings::setCalibrationDate(const std::optional<Date>& value)
{
    if (value != calibrationDate_) {
        calibrationDate_ = value;
        emit calibrationDateChanged();
    }
    SettingsStore(store_).write("calibrationDate", value);
}

void AppSettings::setCalibratorReferenceLevel(double value)
{
    if (value != calibratorReferenceLevel_) {
        calibratorReferenceLevel_ = value;
        emit calibratorReferenceLevelChanged();
    }
    SettingsStore(store_).write("calibratorReferenceLevel", value);
}

void AppSettings::setMicrophoneCorrection(const std::optional<MicrophoneCorrection>& value)
{
    if (value != microphoneCorrection_) {
        microphoneCorrection_ = value;
        emit microphoneCorrectionChanged();
    }
    SettingsStore(store_).write("microphoneCorrection", value);
}

void AppSettings::setWeighting(FrequencyWeighting value)
{
    if (value != weighting_) {
        weighting_ = value;
        emit weightingChanged();
        emit meterSettingChanged();
    }
    SettingsStore(store_).write("weighting", value);
}

void AppSettings::setResponse(TimeWeighting value)
{
    if (value != response_) {
        response_ = value;
        emit responseChanged();
        emit meterSettingChanged();
    }
    SettingsStore(store_).write("response", value);
}

void AppSettings::setQlabEnabled(bool value)
{
    if (value != qlabEnabled_) {
        qlabEnabled_ = value;
        emit qlabEnabledChanged();
    }
    SettingsStore(store_).write("qlabEnabled", value);
}

void AppSettings::setQlabHost(const QString& value)
{
    if (value != qlabHost_) {
        qlabHost_ = value;
        emit qlabHostChanged();
    }
    SettingsStore(store_).write("qlabHost", value);
}

void AppSettings::setQlabPort(qint64 value)
{
    if (value != qlabPort_) {
        qlabPort_ = value;
        emit qlabPortChanged();
    }
    SettingsStore(store_).write("qlabPort", value);
}

void AppSettings::setQlabPasscode(const QString& value)
{
    if (value != qlabPasscode_) {
        qlabPasscode_ = value;
        emit qlabPasscodeChanged();
    }
    SettingsStore(store_).write("qlabPasscode", value);
}

void AppSettings::setQlabWorkspace(const QString& value)
{
    if (value != qlabWorkspace_) {
        qlabWorkspace_ = value;
        emit qlabWorkspaceChanged();
    }
    SettingsStore(store_).write("qlabWorkspace", value);
}

void AppSettings::setTimecodeFallbackRate(TimecodeRate value)
{
    if (value != timecodeFallbackRate_) {
        timecodeFallbackRate_ = value;
        emit timecodeFallbackRateChanged();
    }
    SettingsStore(store_).write("timecodeFallbackRate", value);
}

void AppSettings::setAppearance(AppearanceMode value)
{
    if (value != appearance_) {
        appearance_ = value;
        emit appearanceChanged();
    }
    SettingsStore(store_).write("appearance", value);
}

void AppSettings::setGraphDuration(double value)
{
    if (value != graphDuration_) {
        graphDuration_ = value;
        emit graphDurationChanged();
    }
    SettingsStore(store_).write("graphDuration", value);
}

void AppSettings::setElevatedThreshold(double value)
{
    if (value != elevatedThreshold_) {
        elevatedThreshold_ = value;
        emit elevatedThresholdChanged();
    }
    SettingsStore(store_).write("elevatedThreshold", value);
}

void AppSettings::setHighThreshold(double value)
{
    if (value != highThreshold_) {
        highThreshold_ = value;
        emit highThresholdChanged();
    }
    SettingsStore(store_).write("highThreshold", value);
}

void AppSettings::setShowModeShowsGraph(bool value)
{
    if (value != showModeShowsGraph_) {
        showModeShowsGraph_ = value;
        emit showModeShowsGraphChanged();
    }
    SettingsStore(store_).write("showModeShowsGraph", value);
}

void AppSettings::setScreenBrightness(double requested)
{
    // The one clamp of the class: the screen never goes fully dark.
    const double value = SettingsStore::clampedBrightness(requested);
    if (value != screenBrightness_) {
        screenBrightness_ = value;
        emit screenBrightnessChanged();
    }
    SettingsStore(store_).write("screenBrightness", value);
}

void AppSettings::setSpectrumResolution(SpectrumResolution value)
{
    if (value != spectrumResolution_) {
        spectrumResolution_ = value;
        emit spectrumResolutionChanged();
    }
    SettingsStore(store_).write("spectrumResolution", value);
}

void AppSettings::setSpectrumStyle(SpectrumStyle value)
{
    if (value != spectrumStyle_) {
        spectrumStyle_ = value;
        emit spectrumStyleChanged();
    }
    SettingsStore(store_).write("spectrumStyle", value);
}

void AppSettings::setFeedbackWarningEnabled(bool value)
{
    if (value != feedbackWarningEnabled_) {
        feedbackWarningEnabled_ = value;
        emit feedbackWarningEnabledChanged();
    }
    SettingsStore(store_).write("feedbackWarningEnabled", value);
}

void AppSettings::setDanteMonitoringEnabled(bool value)
{
    if (value != danteMonitoringEnabled_) {
        danteMonitoringEnabled_ = value;
        emit danteMonitoringEnabledChanged();
    }
    SettingsStore(store_).write("danteMonitoringEnabled", value);
}

void AppSettings::setDanteDropoutFlash(bool value)
{
    if (value != danteDropoutFlash_) {
        danteDropoutFlash_ = value;
        emit danteDropoutFlashChanged();
    }
    SettingsStore(store_).write("danteDropoutFlash", value);
}

void AppSettings::setUnhingedMode(bool value)
{
    if (value != unhingedMode_) {
        unhingedMode_ = value;
        emit unhingedModeChanged();
    }
    SettingsStore(store_).write("unhingedMode", value);
}

void AppSettings::setMicMonitoringEnabled(bool value)
{
    if (value != micMonitoringEnabled_) {
        micMonitoringEnabled_ = value;
        emit micMonitoringEnabledChanged();
    }
    SettingsStore(store_).write("micMonitoringEnabled", value);
}

void AppSettings::setMicLowBatteryWarnings(bool value)
{
    if (value != micLowBatteryWarnings_) {
        micLowBatteryWarnings_ = value;
        emit micLowBatteryWarningsChanged();
    }
    SettingsStore(store_).write("micLowBatteryWarnings", value);
}

void AppSettings::setCrewRole(CrewRole value)
{
    if (value != crewRole_) {
        crewRole_ = value;
        emit crewRoleChanged();
    }
    SettingsStore(store_).write("crewRole", value);
}

void AppSettings::setStationName(const QString& value)
{
    if (value != stationName_) {
        stationName_ = value;
        emit stationNameChanged();
    }
    SettingsStore(store_).write("stationName", value);
}

void AppSettings::setCrewPrimary(const QString& value)
{
    if (value != crewPrimary_) {
        crewPrimary_ = value;
        emit crewPrimaryChanged();
    }
    SettingsStore(store_).write("crewPrimary", value);
}

void AppSettings::setRecordsLevelHistory(bool value)
{
    if (value != recordsLevelHistory_) {
        recordsLevelHistory_ = value;
        emit recordsLevelHistoryChanged();
    }
    SettingsStore(store_).write("recordsLevelHistory", value);
}

void AppSettings::setRecordsSessions(bool value)
{
    if (value != recordsSessions_) {
        recordsSessions_ = value;
        emit recordsSessionsChanged();
    }
    SettingsStore(store_).write("recordsSessions", value);
}

QString AppSettings::meterSetting() const
{
    return QString::fromUtf8(symbol(weighting_).data(), static_cast<qsizetype>(symbol(weighting_).size()))
           + " / "
           + QString::fromUtf8(title(response_).data(), static_cast<qsizetype>(title(response_).size()));
}

LevelRange AppSettings::levelRange(double level) const
{
    return LevelRanges::level(level, elevatedThreshold_, highThreshold_);
}

void AppSettings::resetCalibration()
{
    setCalibrationOffset(uncalibratedOffset);
    setCalibrationDate(std::nullopt);
}

} // namespace ostrel
