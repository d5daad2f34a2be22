// vesk-emulator, the program: it starts, says where it listens, logs one
// line per request whatever rules the shell sets for the client's loggers,
// and stops on SIGTERM.

#include "HttpHelpers.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>

#include <csignal>

namespace vesk::emulator::test {
namespace {

TEST(EmulatorProgram, ServesLogsEachRequestAndStopsOnSigterm) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Rules for the client's loggers, as a shell set up for vesk has them.
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("*=false"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(VESK_EMULATOR_PROGRAM),
                  {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                   QStringLiteral("--fault"), QStringLiteral("unreserveCheque:reset")});
    ASSERT_TRUE(program.waitForStarted(5000));

    QElapsedTimer timer;
    timer.start();
    QByteArray out;
    const QRegularExpression listening(
        QStringLiteral("listening on http://127\\.0\\.0\\.1:(\\d+)"));
    QRegularExpressionMatch match;
    while (timer.elapsed() < 10000) {
        program.waitForReadyRead(100);
        out += program.readAllStandardOutput();
        match = listening.match(QString::fromUtf8(out));
        if (match.hasMatch())
            break;
    }
    ASSERT_TRUE(match.hasMatch()) << "no address within " << timer.elapsed()
                                  << " ms: " << out.toStdString();
    EXPECT_TRUE(out.contains("fault: unreserveCheque:reset\n")) << out.toStdString();
    const quint16 port = quint16(match.captured(1).toUInt());
    EXPECT_EQ(post(port, salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status, 200);

    ::kill(pid_t(program.processId()), SIGTERM);
    ASSERT_TRUE(program.waitForFinished(5000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    const QString log = QString::fromUtf8(program.readAllStandardError());
    EXPECT_TRUE(log.contains(QRegularExpression(
        QStringLiteral(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z itemInfo 200 \d+ ms)"))))
        << log.toStdString();
}

} // namespace
} // namespace vesk::emulator::test
