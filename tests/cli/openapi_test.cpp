// The services' contract as `vesk openapi` writes it, and `vesk --version`.
// Whether the document is valid OpenAPI and whether every body the library
// writes conforms to it is checked by an outside validator (tests/contract);
// these tests pin what the document says.

#include "InProcess.h"

#include <cli/OpenApi.h>

#include <vesk/version.h>

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

QJsonObject schemaNamed(const QString& name) {
    return openApiDocument()[QStringLiteral("components")][QStringLiteral("schemas")][name]
        .toObject();
}

TEST(OpenApiDocument, HasOnePostPathPerOperationUnderItsServicesDefaultUrl) {
    const QJsonObject document = openApiDocument();
    EXPECT_EQ(document[QStringLiteral("openapi")].toString(), QStringLiteral("3.1.0"));
    EXPECT_EQ(document[QStringLiteral("info")][QStringLiteral("version")].toString(),
              QStringLiteral(VESK_VERSION_STRING));
    EXPECT_EQ(document[QStringLiteral("servers")][0][QStringLiteral("url")].toString(),
              QStringLiteral("http://127.0.0.1:55555"));
    const QJsonObject paths = document[QStringLiteral("paths")].toObject();
    EXPECT_EQ(paths.size(), 16);
    const QJsonObject discCalc =
        paths[QStringLiteral("/api/axapta/ExchangeData_Disc/discCalc")][QStringLiteral("post")]
            .toObject();
    EXPECT_EQ(discCalc[QStringLiteral("operationId")].toString(), QStringLiteral("disc.discCalc"));
    EXPECT_EQ(discCalc[QStringLiteral("requestBody")][QStringLiteral("content")][QStringLiteral(
                  "application/json")][QStringLiteral("schema")][QStringLiteral("$ref")]
                  .toString(),
              QStringLiteral("#/components/schemas/disc.DiscCalcRequest"));
    EXPECT_EQ(discCalc[QStringLiteral("responses")][QStringLiteral("200")]
                      [QStringLiteral("content")][QStringLiteral("application/json")]
                      [QStringLiteral("schema")][QStringLiteral("$ref")]
                          .toString(),
              QStringLiteral("#/components/schemas/disc.DiscCalcResponse"));
    EXPECT_EQ(discCalc[QStringLiteral("responses")][QStringLiteral("default")]
                      [QStringLiteral("content")][QStringLiteral("application/json")]
                      [QStringLiteral("schema")][QStringLiteral("$ref")]
                          .toString(),
              QStringLiteral("#/components/schemas/Error"));
    EXPECT_TRUE(paths.contains(QStringLiteral("/api/axapta/ExchangeData_Loyalty/commitCheque")));
    EXPECT_TRUE(paths.contains(QStringLiteral("/api/axapta/ExchangeData_Sales/itemInfo")));
}

TEST(OpenApiDocument, RecordSchemaKeepsTheDeclaredOrderAndRequiresThePlainMembers) {
    const QJsonObject line = schemaNamed(QStringLiteral("disc.LinesEntryRequest"));
    EXPECT_EQ(line[QStringLiteral("title")].toString(),
              QStringLiteral("vesk::disc::LinesEntryRequest"));
    EXPECT_EQ(line[QStringLiteral("x-vesk-member-order")].toArray(),
              QJsonArray::fromStringList({QStringLiteral("barcode"), QStringLiteral("colorId"),
                                          QStringLiteral("itemId"), QStringLiteral("sizeId"),
                                          QStringLiteral("skuId"), QStringLiteral("discounts"),
                                          QStringLiteral("lineNum"), QStringLiteral("locationId"),
                                          QStringLiteral("retailPrice"), QStringLiteral("qty"),
                                          QStringLiteral("extraDataLine")}));
    EXPECT_EQ(line[QStringLiteral("required")].toArray(),
              QJsonArray::fromStringList({QStringLiteral("barcode"), QStringLiteral("discounts"),
                                          QStringLiteral("lineNum"), QStringLiteral("locationId"),
                                          QStringLiteral("retailPrice"), QStringLiteral("qty"),
                                          QStringLiteral("extraDataLine")}));
    const QJsonObject properties = line[QStringLiteral("properties")].toObject();
    EXPECT_EQ(
        properties[QStringLiteral("discounts")].toObject(),
        (QJsonObject{
            {QStringLiteral("type"), QStringLiteral("array")},
            {QStringLiteral("items"),
             QJsonObject{{QStringLiteral("$ref"),
                          QStringLiteral("#/components/schemas/disc.DiscountsEntryRequest")}}}}));
    EXPECT_EQ(properties[QStringLiteral("lineNum")].toObject(),
              (QJsonObject{{QStringLiteral("type"), QStringLiteral("integer")},
                           {QStringLiteral("format"), QStringLiteral("int32")}}));
    EXPECT_EQ(properties[QStringLiteral("qty")].toObject(),
              (QJsonObject{{QStringLiteral("type"), QStringLiteral("number")}}));
    // An entry record reached only through a list has its own schema.
    EXPECT_EQ(schemaNamed(QStringLiteral("disc.DiscountsEntryRequest"))[QStringLiteral("title")]
                  .toString(),
              QStringLiteral("vesk::disc::DiscountsEntryRequest"));
}

TEST(OpenApiDocument, EveryRequiredKeyIsAPropertyAndEveryReferenceResolves) {
    const QJsonObject schemas =
        openApiDocument()[QStringLiteral("components")][QStringLiteral("schemas")].toObject();
    EXPECT_EQ(schemas.size(), 52);
    for (auto schema = schemas.begin(); schema != schemas.end(); ++schema) {
        const QJsonObject properties = schema->toObject()[QStringLiteral("properties")].toObject();
        for (const QJsonValue& key : schema->toObject()[QStringLiteral("required")].toArray()) {
            EXPECT_TRUE(properties.contains(key.toString()))
                << schema.key().toStdString() << ": " << key.toString().toStdString();
        }
        for (const QJsonValue& property : properties) {
            const QString ref =
                property[QStringLiteral("items")][QStringLiteral("$ref")].toString();
            if (!ref.isEmpty()) {
                EXPECT_TRUE(schemas.contains(ref.section(u'/', -1))) << ref.toStdString();
            }
        }
    }
    // A refused call's body may lack either member: the code then reads as 0.
    const QJsonObject error = schemas[QStringLiteral("Error")].toObject();
    EXPECT_FALSE(error.contains(QStringLiteral("required")));
    EXPECT_EQ(error[QStringLiteral("properties")].toObject().keys(),
              (QStringList{QStringLiteral("code"), QStringLiteral("userMsg")}));
}

TEST(OpenApiDocument, DateTimePatternAcceptsWhatQtWritesAndTheEmptyText) {
    const QJsonObject member =
        schemaNamed(QStringLiteral("loyalty.ParkingInfoResponse"))[QStringLiteral(
            "properties")][QStringLiteral("parkingDateTimeEntry")]
            .toObject();
    EXPECT_EQ(member[QStringLiteral("type")].toString(), QStringLiteral("string"));
    const QRegularExpression pattern(member[QStringLiteral("pattern")].toString());
    ASSERT_TRUE(pattern.isValid());
    const QDate day(2026, 11, 23);
    const QTime time(10, 15, 30, 250);
    const QStringList accepted{
        QString(),
        QDateTime(day, time).toString(Qt::ISODateWithMs),
        QDateTime(day, time, QTimeZone::utc()).toString(Qt::ISODateWithMs),
        QDateTime(day, time, QTimeZone(3 * 3600)).toString(Qt::ISODate),
    };
    for (const QString& text : accepted)
        EXPECT_TRUE(pattern.match(text).hasMatch()) << text.toStdString();
    for (const QString& text : {QStringLiteral("text"), QStringLiteral("2026-11-23"),
                                QStringLiteral("2026-11-23T10:15:30+3")})
        EXPECT_FALSE(pattern.match(text).hasMatch()) << text.toStdString();
}

TEST(OpenApiCommand, PrintsTheDocumentWithoutAFile) {
    const CliRun run = runInProcess({QStringLiteral("openapi")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(QJsonDocument::fromJson(run.out.toUtf8()).object(), openApiDocument());
}

// Runs `vesk openapi` with a path below a fresh folder.
class OpenApiCommandToFile : public testing::Test {
protected:
    CliRun runWith(const QString& relativePath) {
        path = dir.filePath(relativePath);
        return runInProcess({QStringLiteral("openapi"), path});
    }
    QTemporaryDir dir;
    QString path;
};

TEST_F(OpenApiCommandToFile, WritesTheDocumentToTheNamedFile) {
    const CliRun run = runWith(QStringLiteral("openapi.json"));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, QString());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QJsonDocument::fromJson(file.readAll()).object(), openApiDocument());
}

TEST_F(OpenApiCommandToFile, UnwritablePathFailsWithTheReasonAndLeavesNoFile) {
    const CliRun run = runWith(QStringLiteral("missing/openapi.json"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: cannot write ") + path + u':'))
        << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(path));
}

TEST(VersionOption, NamesTheProgramsAndTheLoadedLibrarysVersion) {
    const CliRun run = runInProcess({QStringLiteral("--version")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(
        run.out,
        QStringLiteral("vesk %1 (libVeskIface %1)\n").arg(QLatin1String(VESK_VERSION_STRING)));
    EXPECT_STREQ(vesk::version(), VESK_VERSION_STRING);
}

} // namespace
} // namespace vesk::cli::test
