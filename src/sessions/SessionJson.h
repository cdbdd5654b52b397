#pragma once

// Reading and writing the values of session files. A session file is whole or useless, so each
// reader stops at the first problem and names it in `error`.
#include <optional>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include "common/Date.h"
#include "measurement/LevelStatistics.h"

namespace ostrel::SessionJson {

// Upper case without braces, as UUIDs are commonly written in JSON.
QString uuidText(const QUuid& id);

// False, with `error` set to `text` when one is asked for.
bool fail(QString* error, const QString& text);

// Required keys: missing, null or another type fails.
std::optional<QUuid> uuid(const QJsonObject& object, const char* key, QString* error);
std::optional<Date> date(const QJsonObject& object, const char* key, QString* error);
std::optional<double> number(const QJsonObject& object, const char* key, QString* error);
std::optional<QJsonArray> array(const QJsonObject& object, const char* key, QString* error);
std::optional<LevelStatistics> statistics(
    const QJsonObject& object, const char* key, QString* error);
bool readString(const QJsonObject& object, const char* key, QString& field, QString* error);

// Optional keys: missing or null leaves the field absent; another type fails.
bool readOptionalDate(
    const QJsonObject& object, const char* key, std::optional<Date>& field, QString* error);
bool readOptionalString(
    const QJsonObject& object, const char* key, std::optional<QString>& field, QString* error);

} // namespace ostrel::SessionJson
