#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <bit>
#include <cmath>
#include <limits>

#include "qlab/ByteText.h"
#include "qlab/OSCMessage.h"
#include "qlab/QLabProtocol.h"

// Checks the codec against liblo, an OSC implementation written by other people: packets liblo
// writes must read as liblo meant them, and packets we write must read in liblo as we meant them.

using namespace ostrel;
using ostrel::test::Bytes;

namespace {

const QString script = QStringLiteral(OSTREL_LIBLO_INTEROP_SCRIPT);

struct ProcessRun {
    bool finished = false;
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

ProcessRun run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    ProcessRun result;
    if (!process.waitForStarted(10'000)) return result;
    result.finished
        = process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit;
    result.exitCode = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

// Debian installs the module for its own interpreter, which a PATH may hide behind another.
std::optional<QString> pythonWithLiblo()
{
    for (const QString& candidate :
        {QStringLiteral("python3"), QStringLiteral("/usr/bin/python3")}) {
        const ProcessRun probe = run(candidate, {"-c", "import liblo"});
        if (probe.finished && probe.exitCode == 0) return candidate;
    }
    return std::nullopt;
}

QJsonArray jsonArray(const ProcessRun& result)
{
    QJsonParseError error {};
    const auto document = QJsonDocument::fromJson(result.output, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << result.errors.toStdString();
    return document.array();
}

std::uint64_t hexNumber(const QJsonValue& value)
{
    bool ok = false;
    const std::uint64_t number = value.toString().toULongLong(&ok, 16);
    EXPECT_TRUE(ok) << "not hex: " << value.toString().toStdString();
    return number;
}

Bytes hexBytes(const QJsonValue& value)
{
    return test::hex(value.toString().toStdString());
}

// The argument our decoder must make of what liblo wrote; nothing for a tag it does not read.
std::optional<OSCArgument> expectedReading(const QJsonObject& argument)
{
    const QString tag = argument.value("tag").toString();
    if (tag == "i")
        return OSCArgument::int32(static_cast<std::int32_t>(argument.value("value").toInteger()));
    if (tag == "f")
        return OSCArgument::float32(
            std::bit_cast<float>(static_cast<std::uint32_t>(hexNumber(argument.value("bits")))));
    if (tag == "s" || tag == "S")
        return OSCArgument::string(argument.value("value").toString().toStdString());
    if (tag == "b") return OSCArgument::blob(hexBytes(argument.value("hex")));
    if (tag == "h" || tag == "t")
        return OSCArgument::int32(static_cast<std::int32_t>(
            static_cast<std::uint32_t>(hexNumber(argument.value("raw")))));
    if (tag == "d") {
        const double wide = std::bit_cast<double>(hexNumber(argument.value("bits")));
        const float infinity = std::numeric_limits<float>::infinity();
        if (std::abs(wide) > std::numeric_limits<float>::max())
            return OSCArgument::float32(wide > 0 ? infinity : -infinity);
        return OSCArgument::float32(static_cast<float>(wide));
    }
    if (tag == "T") return OSCArgument::boolean(true);
    if (tag == "F") return OSCArgument::boolean(false);
    if (tag == "N" || tag == "I") return OSCArgument::null();
    return std::nullopt;
}

// Like ==, but floats compare by bit pattern so that a NaN can match itself.
testing::AssertionResult same(const OSCArgument& actual, const OSCArgument& expected)
{
    if (actual.kind() != expected.kind())
        return testing::AssertionFailure()
            << "tag " << actual.typeTag() << " instead of " << expected.typeTag();
    if (actual.kind() == OSCArgument::Kind::float32) {
        const auto actualBits = std::bit_cast<std::uint32_t>(std::get<float>(actual.value()));
        const auto expectedBits = std::bit_cast<std::uint32_t>(std::get<float>(expected.value()));
        if (actualBits == expectedBits) return testing::AssertionSuccess();
        return testing::AssertionFailure()
            << std::hex << "float bits " << actualBits << " instead of " << expectedBits;
    }
    if (actual == expected) return testing::AssertionSuccess();
    return testing::AssertionFailure()
        << "value " << actual.stringValue().value_or("(no text)") << " instead of "
        << expected.stringValue().value_or("(no text)");
}

// What liblo read, in the same form as an argument we wrote.
OSCArgument libloReading(const QJsonObject& argument)
{
    const QString tag = argument.value("tag").toString();
    if (tag == "i")
        return OSCArgument::int32(static_cast<std::int32_t>(argument.value("value").toInteger()));
    if (tag == "f")
        return OSCArgument::float32(
            std::bit_cast<float>(static_cast<std::uint32_t>(hexNumber(argument.value("bits")))));
    if (tag == "s") return OSCArgument::string(argument.value("value").toString().toStdString());
    if (tag == "b") return OSCArgument::blob(hexBytes(argument.value("hex")));
    if (tag == "T") return OSCArgument::boolean(true);
    if (tag == "F") return OSCArgument::boolean(false);
    if (tag == "N") return OSCArgument::null();
    ADD_FAILURE() << "liblo read an unexpected tag " << tag.toStdString();
    return OSCArgument::null();
}

std::vector<OSCMessage> messagesWeWrite()
{
    const float nan = std::bit_cast<float>(std::uint32_t {0x7fc00000});
    const float infinity = std::numeric_limits<float>::infinity();
    return {
        OSCMessage("/workspaces"),
        OSCMessage("/abc"),
        OSCMessage("/i",
            {OSCArgument::int32(0), OSCArgument::int32(-1), OSCArgument::int32(2147483647),
                OSCArgument::int32(-2147483647 - 1), OSCArgument::int32(0x01020304)}),
        OSCMessage("/f",
            {OSCArgument::float32(1.5f), OSCArgument::float32(-0.0f), OSCArgument::float32(0.1f),
                OSCArgument::float32(infinity), OSCArgument::float32(-infinity),
                OSCArgument::float32(nan),
                OSCArgument::float32(std::numeric_limits<float>::denorm_min()),
                OSCArgument::float32(std::numeric_limits<float>::max())}),
        OSCMessage("/s",
            {OSCArgument::string(""), OSCArgument::string("abc"), OSCArgument::string("abcd"),
                OSCArgument::string("h\xC3\xA9llo \xE2\x99\xAA \xF0\x9F\x8E\xB5"),
                OSCArgument::string(std::string(301, 'q'))}),
        OSCMessage("/b",
            {OSCArgument::blob({}), OSCArgument::blob({1}), OSCArgument::blob({1, 2, 3, 4}),
                OSCArgument::blob({1, 2, 3, 4, 5}),
                OSCArgument::blob({0xc0, 0xdb, 0xdc, 0xdd, 0x00}),
                OSCArgument::blob(Bytes(1000, 0xab))}),
        OSCMessage(
            "/x", {OSCArgument::boolean(true), OSCArgument::boolean(false), OSCArgument::null()}),
        OSCMessage("/mix",
            {OSCArgument::int32(-1), OSCArgument::float32(0.25f), OSCArgument::string("hi"),
                OSCArgument::blob({0xff}), OSCArgument::boolean(true), OSCArgument::null()}),
        QLabProtocol::subscribeToUpdates(),
        QLabProtocol::connect("0A1B2C3D-4E5F", "4321"),
        QLabProtocol::cueValues("0A1B2C3D-4E5F", "6789", QLabProtocol::cueValueKeys),
        QLabProtocol::listen("0A1B2C3D-4E5F", "cue/start"),
    };
}

class OSCLibloInterop : public testing::Test {
protected:
    void SetUp() override
    {
        const auto found = pythonWithLiblo();
        if (!found)
            GTEST_SKIP()
                << "python3 with the liblo module (Debian: python3-liblo) is not available, so the "
                   "codec is not checked against liblo.";
        python = *found;
        ASSERT_TRUE(directory.isValid());
    }

    QString python;
    QTemporaryDir directory;
};

} // namespace

TEST_F(OSCLibloInterop, PacketsLibloWritesDecodeAsLibloMeantThem)
{
    const ProcessRun encoded = run(python, {script, "encode", directory.path()});
    ASSERT_TRUE(encoded.finished && encoded.exitCode == 0) << encoded.errors.toStdString();
    const QJsonArray manifest = jsonArray(encoded);
    ASSERT_GE(manifest.size(), 16);

    for (const QJsonValue& entryValue : manifest) {
        const QJsonObject entry = entryValue.toObject();
        const std::string name = entry.value("name").toString().toStdString();
        SCOPED_TRACE(name);
        QFile file(entry.value("file").toString());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray raw = file.readAll();
        const Bytes packet(raw.begin(), raw.end());

        std::vector<OSCArgument> expected;
        bool readable = true;
        bool writable = true;
        for (const QJsonValue& argument : entry.value("arguments").toArray()) {
            const auto reading = expectedReading(argument.toObject());
            if (!reading) readable = false;
            if (reading) expected.push_back(*reading);
            if (!QString("ifsbTFN").contains(argument.toObject().value("tag").toString()))
                writable = false;
        }

        const auto decoded = OSCMessage::decoding(packet);
        if (!readable) {
            EXPECT_FALSE(decoded.has_value()) << "a tag outside the table must drop the message";
            continue;
        }
        ASSERT_TRUE(decoded.has_value());
        EXPECT_EQ(decoded->address, entry.value("address").toString().toStdString());
        ASSERT_EQ(decoded->arguments.size(), expected.size());
        for (std::size_t index = 0; index < expected.size(); ++index)
            EXPECT_TRUE(same(decoded->arguments[index], expected[index])) << "argument " << index;
        // Where every tag is one we write, our bytes must be liblo's, byte for byte.
        if (writable) {
            EXPECT_EQ(OSCMessage(decoded->address, expected).encoded(), packet);
        }
    }
}

TEST_F(OSCLibloInterop, PacketsWeWriteDecodeInLibloAsWeMeantThem)
{
    const auto messages = messagesWeWrite();
    QStringList arguments {script, "decode"};
    for (std::size_t index = 0; index < messages.size(); ++index) {
        const QString path = directory.filePath(QString("ours-%1.osc").arg(index));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        const Bytes packet = messages[index].encoded();
        file.write(
            reinterpret_cast<const char*>(packet.data()), static_cast<qint64>(packet.size()));
        arguments.append(path);
    }

    const ProcessRun decoded = run(python, arguments);
    ASSERT_TRUE(decoded.finished && decoded.exitCode == 0) << decoded.errors.toStdString();
    const QJsonArray readings = jsonArray(decoded);
    ASSERT_EQ(static_cast<std::size_t>(readings.size()), messages.size());

    for (std::size_t index = 0; index < messages.size(); ++index) {
        const OSCMessage& message = messages[index];
        SCOPED_TRACE(message.address);
        const QJsonObject reading = readings[static_cast<qsizetype>(index)].toObject();
        ASSERT_TRUE(reading.value("accepted").toBool()) << "liblo did not accept the packet";
        EXPECT_EQ(reading.value("address").toString().toStdString(), message.address);
        const QJsonArray read = reading.value("arguments").toArray();
        ASSERT_EQ(static_cast<std::size_t>(read.size()), message.arguments.size());
        for (std::size_t position = 0; position < message.arguments.size(); ++position) {
            const QJsonObject argument = read[static_cast<qsizetype>(position)].toObject();
            EXPECT_EQ(argument.value("tag").toString().toStdString(),
                std::string(1, message.arguments[position].typeTag()));
            EXPECT_TRUE(same(libloReading(argument), message.arguments[position]))
                << "argument " << position;
        }
    }
}
