#include "EmulatorFixture.h"

namespace vesk::cli::test {

void EmulatorTest::SetUp() {
    emulator::Options options;
    options.host = QStringLiteral("127.0.0.1");
    options.port = 0;
    emulator_ = std::make_unique<emulator::Emulator>(options);
    QString error;
    ASSERT_TRUE(emulator_->start(&error)) << error.toStdString();
}

QStringList EmulatorTest::urlOptions() const {
    QStringList options;
    for (const char* service : {"disc", "loyalty", "sales"}) {
        const QString name = QString::fromLatin1(service);
        options << QStringLiteral("--url") << name + QLatin1Char('=') + serviceUrl(name);
    }
    return options;
}

VeskRun EmulatorTest::call(const QString& service, const QString& operation,
                           const QString& request) const {
    return runVesk(QStringList{QStringLiteral("call"), service, operation, request} + urlOptions());
}

QJsonObject EmulatorTest::respond(const QString& service, const QString& operation,
                                  const QString& request) const {
    const VeskRun run = call(service, operation, request);
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.err, QString()) << testing::PrintToString(run);
    return run.json();
}

QString EmulatorTest::identify(const QString& card) const {
    return respond(QStringLiteral("loyalty"), QStringLiteral("processId"),
                   QStringLiteral(R"({"discCardId": "%1", "chequeId": "L-1"})").arg(card))
        .value(QStringLiteral("token"))
        .toString();
}

} // namespace vesk::cli::test
