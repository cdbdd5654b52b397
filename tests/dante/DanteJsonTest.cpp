#include <gtest/gtest.h>

#include <QJsonDocument>

#include "dante/DanteDevice.h"
#include "dante/DanteEvent.h"

using namespace ostrel;

namespace {

const Date reference = Date {} + std::chrono::seconds(978'307'200);

} // namespace

TEST(DanteJsonTest, ADeviceWritesItsKeysAndLeavesAbsentDetailsOut)
{
    DanteDevice device;
    device.id = "Stage-Box-1";
    device.model = "DX168";
    device.isOnline = false;
    device.firstSeen = addingSeconds(reference, 10.5);
    device.lastChange = addingSeconds(reference, 20.0);
    const QJsonObject json = device.toJson();
    EXPECT_EQ(json.keys(), QStringList({"firstSeen", "id", "isOnline", "lastChange", "model"}));
    EXPECT_DOUBLE_EQ(json.value("firstSeen").toDouble(), 10.5);
    EXPECT_EQ(DanteDevice::fromJson(json), device);
}

TEST(DanteJsonTest, ADeviceWithAMistypedKeyDoesNotDecode)
{
    QJsonObject json = QJsonDocument::fromJson(
        R"({"id":"A","isOnline":true,"firstSeen":1,"lastChange":2,"model":5})")
                           .object();
    EXPECT_FALSE(DanteDevice::fromJson(json));
    json.remove("model");
    EXPECT_TRUE(DanteDevice::fromJson(json));
    json.remove("isOnline");
    EXPECT_FALSE(DanteDevice::fromJson(json));
}

TEST(DanteJsonTest, AnEventRoundTripsWithItsKindAsRawValue)
{
    DanteEvent event {
        QUuid::createUuid(), "Amp", DanteEvent::Kind::returned, addingSeconds(reference, 99.25)};
    const QJsonObject json = event.toJson();
    EXPECT_EQ(json.value("kind").toString(), QString("returned"));
    EXPECT_EQ(DanteEvent::fromJson(json), event);
    QJsonObject unknown = json;
    unknown.insert("kind", "exploded");
    EXPECT_FALSE(DanteEvent::fromJson(unknown));
}
