// The options of every command through the vesk program: where the request
// comes from, the configuration file, --url, --verbose and --help.

#include "EmulatorFixture.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

namespace vesk::cli::test {
namespace {

const QString coffeeRequest =
    QStringLiteral(R"({"sectionId": "HALL", "barcode": "4601234000017"})");

QString writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& content) {
    const QString path = dir.filePath(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(content);
    return path;
}

QString nameOf(const VeskRun& run) {
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    return run.json().value(QStringLiteral("name")).toString();
}

const QString coffeeName = QStringLiteral("Coffee beans, 1 kg");

using CallOptions = EmulatorTest;

TEST_F(CallOptions, RequestIsReadFromStandardInput) {
    const VeskRun run = runVesk(QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                                            QStringLiteral("itemInfo"), QStringLiteral("-")} +
                                    urlOptions(),
                                coffeeRequest.toUtf8());
    EXPECT_EQ(nameOf(run), coffeeName);
}

TEST_F(CallOptions, RequestIsReadFromTheFileAfterTheAtSign) {
    const QTemporaryDir dir;
    const QString file = writeFile(dir, QStringLiteral("request.json"), coffeeRequest.toUtf8());
    const VeskRun run = runVesk(QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                                            QStringLiteral("itemInfo"), QLatin1Char('@') + file} +
                                urlOptions());
    EXPECT_EQ(nameOf(run), coffeeName);
}

TEST_F(CallOptions, ResponseIsPrintedAsIndentedJson) {
    respond(QStringLiteral("sales"), QStringLiteral("reserveCheque"),
            QStringLiteral(R"({"chequeId": "C-9", "lines": []})"));
    const VeskRun run = call(QStringLiteral("sales"), QStringLiteral("unreserveCheque"),
                             QStringLiteral(R"({"chequeId": "C-9"})"));
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.out, QStringLiteral("{\n    \"chequeId\": \"C-9\"\n}\n"));
}

TEST_F(CallOptions, KeyThatNamesNoMemberIsIgnoredWithAWarningAndASuggestion) {
    const VeskRun run = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                             QStringLiteral(R"({"barcode": "4601234000017", "barcodes": []})"));
    EXPECT_EQ(nameOf(run), coffeeName);
    EXPECT_EQ(run.err, QStringLiteral("vesk: warning: $.barcodes names no member of "
                                      "vesk::sales::ItemInfoRequest; did you mean barcode?\n"));
}

TEST_F(CallOptions, MistypedValuesAreWarnedAboutAndConverted) {
    // A list given as a number is an empty list; a number given as text is converted.
    const VeskRun run =
        call(QStringLiteral("disc"), QStringLiteral("discCalc"),
             QStringLiteral(
                 R"({"chequeId": 17, "lines": 5, "salesChannel": "3", "publicities": null})"));
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.err, QStringLiteral("vesk: warning: $.chequeId 17 is not text\n"
                                      "vesk: warning: $.lines 5 is not a list of objects\n"
                                      "vesk: warning: $.publicities null is not a list of texts\n"
                                      "vesk: warning: $.salesChannel \"3\" is not a 32-bit "
                                      "integer\n"));
    const QJsonObject reply = run.json();
    EXPECT_EQ(reply.value(QStringLiteral("chequeId")), QStringLiteral("17"));
    EXPECT_EQ(reply.value(QStringLiteral("lines")), QJsonArray());
}

TEST_F(CallOptions, ConfigFileNamesTheServiceUrl) {
    const QTemporaryDir dir;
    const QString config = writeFile(
        dir, QStringLiteral("vesk.ini"),
        QStringLiteral("[Vesk.sales]\nurl=%1\n").arg(serviceUrl(QStringLiteral("sales"))).toUtf8());
    const VeskRun run =
        runVesk({QStringLiteral("--config"), config, QStringLiteral("call"),
                 QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest});
    EXPECT_EQ(nameOf(run), coffeeName);
}

TEST_F(CallOptions, MorvaConfigNamesTheFileWithoutTheOption) {
    const QTemporaryDir dir;
    const QString config = writeFile(
        dir, QStringLiteral("vesk.ini"),
        QStringLiteral("[Vesk.sales]\nurl=%1\n").arg(serviceUrl(QStringLiteral("sales"))).toUtf8());
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("MORVA_CONFIG"), config);
    const VeskRun run = runVesk({QStringLiteral("call"), QStringLiteral("sales"),
                                 QStringLiteral("itemInfo"), coffeeRequest},
                                QByteArray(), environment);
    EXPECT_EQ(nameOf(run), coffeeName);
}

TEST_F(CallOptions, UrlOptionWinsOverTheConfigFile) {
    const ClosedPort closed;
    const QTemporaryDir dir;
    const QString config = writeFile(
        dir, QStringLiteral("vesk.ini"),
        QStringLiteral("[Vesk.sales]\nurl=http://127.0.0.1:%1/\n").arg(closed.port()).toUtf8());
    const VeskRun run =
        runVesk(QStringList{QStringLiteral("--config"), config, QStringLiteral("call"),
                            QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest} +
                urlOptions());
    EXPECT_EQ(nameOf(run), coffeeName);
}

TEST_F(CallOptions, VerboseLogsTheExchangeOnStandardError) {
    const VeskRun run =
        runVesk(QStringList{QStringLiteral("--verbose"), QStringLiteral("call"),
                            QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest} +
                urlOptions());
    EXPECT_EQ(nameOf(run), coffeeName);
    const QString url = serviceUrl(QStringLiteral("sales")) + QStringLiteral("itemInfo");
    EXPECT_TRUE(run.err.contains(QStringLiteral("POST ") + url + QStringLiteral(" -> 200")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("\"barcode\":\"4601234000017\"")))
        << run.err.toStdString();
}

TEST_F(CallOptions, WithoutVerboseTheCallIsQuiet) {
    const VeskRun run = call(QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest);
    EXPECT_EQ(nameOf(run), coffeeName);
    EXPECT_EQ(run.err, QString());
}

class HelpOption : public ::testing::TestWithParam<QStringList> {};

TEST_P(HelpOption, PrintsTheUsageAndExitsWith0) {
    const VeskRun run = runVesk(GetParam());
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("Usage: vesk "))) << run.out.toStdString();
    EXPECT_EQ(run.err, QString());
}

INSTANTIATE_TEST_SUITE_P(
    Cli, HelpOption,
    ::testing::Values(QStringList{QStringLiteral("--help")}, QStringList{QStringLiteral("-h")},
                      QStringList{QStringLiteral("help")},
                      QStringList{QStringLiteral("help"), QStringLiteral("call")},
                      QStringList{QStringLiteral("call"), QStringLiteral("--help")},
                      QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                                  QStringLiteral("--help")},
                      QStringList{QStringLiteral("ops"), QStringLiteral("--help")},
                      QStringList{QStringLiteral("record"), QStringLiteral("-h")},
                      QStringList{QStringLiteral("demo"), QStringLiteral("--help")}),
    [](const ::testing::TestParamInfo<QStringList>& info) {
        QString name = info.param.join(QLatin1Char('_'));
        name.replace(QStringLiteral("--"), QStringLiteral("option_"))
            .replace(QLatin1Char('-'), QStringLiteral("option_"));
        return name.toStdString();
    });

} // namespace
} // namespace vesk::cli::test
