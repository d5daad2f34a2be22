#include <morva/Log4Qt.h>

#include <QLoggingCategory>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

QStringList captured;

void capture(QtMsgType, const QMessageLogContext& context, const QString& message) {
    captured << QString::fromLatin1(context.category) + QLatin1String(": ") + message;
}

class LoggerTest : public testing::Test {
protected:
    LoggerTest() {
        captured.clear();
        previous_ = qInstallMessageHandler(capture);
    }
    ~LoggerTest() override {
        qInstallMessageHandler(previous_);
        QLoggingCategory::setFilterRules(QString());
    }

private:
    QtMessageHandler previous_;
};

TEST_F(LoggerTest, SameNameGivesTheSameLogger) {
    EXPECT_EQ(Log4Qt::LogManager::logger("log4qt.same"), Log4Qt::LogManager::logger("log4qt.same"));
    EXPECT_NE(Log4Qt::LogManager::logger("log4qt.same"),
              Log4Qt::LogManager::logger("log4qt.other"));
    EXPECT_EQ(Log4Qt::LogManager::logger("log4qt.same")->name(), QStringLiteral("log4qt.same"));
}

TEST_F(LoggerTest, QuietBelowWarningsByDefault) {
    const Log4Qt::Logger* logger = Log4Qt::LogManager::logger("log4qt.quiet");
    logger->debug("d");
    logger->info("i");
    logger->warn("w");
    logger->error("e");
    EXPECT_EQ(captured, (QStringList{"log4qt.quiet: w", "log4qt.quiet: e"}));
    EXPECT_FALSE(logger->isDebugEnabled());
    EXPECT_FALSE(logger->isInfoEnabled());
}

TEST_F(LoggerTest, LoggingRulesTurnLevelsOn) {
    const Log4Qt::Logger* logger = Log4Qt::LogManager::logger("log4qt.rules");
    QLoggingCategory::setFilterRules("log4qt.rules.debug=true\nlog4qt.rules.info=true");
    logger->debug("d");
    logger->info("i");
    EXPECT_EQ(captured, (QStringList{"log4qt.rules: d", "log4qt.rules: i"}));
    EXPECT_TRUE(logger->isDebugEnabled());
}

TEST_F(LoggerTest, RulesOfOneLoggerLeaveOthersAlone) {
    const Log4Qt::Logger* on = Log4Qt::LogManager::logger("log4qt.on");
    const Log4Qt::Logger* off = Log4Qt::LogManager::logger("log4qt.off");
    QLoggingCategory::setFilterRules("log4qt.on.info=true");
    on->info("yes");
    off->info("no");
    EXPECT_EQ(captured, (QStringList{"log4qt.on: yes"}));
}

} // namespace
