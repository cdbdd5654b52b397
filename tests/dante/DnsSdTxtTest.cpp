#include <gtest/gtest.h>

#include "dante/DanteAddress.h"
#include "dante/DanteAdvertisement.h"
#include "network/DnsSdTxt.h"

using namespace ostrel;

TEST(DnsSdTxtTest, KeysAreReadWithoutCaseAndTheFirstStringOfAKeyWins)
{
    const auto txt = DnsSdTxt::map({"Model=DX168", "model=Other", "MF=Allen & Heath"});
    EXPECT_EQ(txt.at("model"), QString("DX168"));
    EXPECT_EQ(txt.at("mf"), QString("Allen & Heath"));
}

TEST(DnsSdTxtTest, AStringWithoutEqualsIsAKeyWithAnEmptyValueAndAnEmptyKeyIsIgnored)
{
    const auto txt = DnsSdTxt::map({"flag", "=orphan", "", "a==b"});
    EXPECT_EQ(txt.size(), 2u);
    EXPECT_EQ(txt.at("flag"), QString());
    EXPECT_EQ(txt.at("a"), QString("=b"));
}

TEST(DnsSdTxtTest, AValueThatIsNotUtf8IsDroppedSoTheNextKeyOfTheDetailIsUsed)
{
    const auto txt = DnsSdTxt::map({QByteArray("model=A\xff"
                                               "B"),
        "model_id=DX168", QByteArray("mf=Caf\xc3\xa9")});
    EXPECT_FALSE(txt.contains("model"));
    EXPECT_EQ(txt.at("mf"), QString::fromUtf8("Caf\xc3\xa9"));
    EXPECT_EQ(DanteAdvertisement::details(txt).model, QString("DX168"));
}

TEST(DnsSdTxtTest, AKeyWithControlOrNonAsciiBytesIsIgnored)
{
    const auto txt = DnsSdTxt::map({QByteArray("mo\x01"
                                               "del=X"),
        QByteArray("m\xc3\xa9=Y")});
    EXPECT_TRUE(txt.empty());
}

TEST(DnsSdTxtTest, AHugeRecordIsReadWhole)
{
    std::vector<QByteArray> strings;
    for (int i = 0; i < 400; ++i)
        strings.push_back("k" + QByteArray::number(i) + "=" + QByteArray(250, 'x'));
    strings.push_back("model=" + QByteArray(240, 'M'));
    const auto txt = DnsSdTxt::map(strings);
    EXPECT_EQ(txt.size(), 401u);
    EXPECT_EQ(DanteAdvertisement::details(txt).model, QString(240, u'M'));
}

TEST(DnsSdTxtTest, AMissingDetailIsAbsent)
{
    const auto details = DanteAdvertisement::details(DnsSdTxt::map({"txtvers=1"}));
    EXPECT_EQ(details, DanteDetails {});
}

TEST(DanteAddressTest, AnIpv6AddressLosesItsZoneSuffixFromThePercentOn)
{
    EXPECT_EQ(DanteAddress::describe("fe80::1c2:3%eth0"), QString("fe80::1c2:3"));
    EXPECT_EQ(DanteAddress::describe("fe80::1%en0%x"), QString("fe80::1"));
    EXPECT_EQ(DanteAddress::describe("192.168.1.20"), QString("192.168.1.20"));
    EXPECT_EQ(DanteAddress::describe("stagebox.local"), QString("stagebox.local"));
}
