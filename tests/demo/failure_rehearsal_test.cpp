// The rehearsal of a till's failures, against an emulator in this process:
// each failure gives the outcome the till decides on, and the repeated
// commit and reservation are applied once.

#include <demo/FailureRehearsal.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace vesk::demo::test {
namespace {

TEST(FailureRehearsalTest, EachFailureGivesItsOutcomeAndTheRepeatsApplyOnce) {
    Options options;
    options.port = 0;
    QString output;
    QTextStream out(&output);
    QElapsedTimer timer;
    timer.start();
    const int result = rehearseFailures(options, out);
    out.flush();

    EXPECT_EQ(result, 0) << output.toStdString();
    EXPECT_LT(timer.elapsed(), 10000);
    for (const char* line :
         {"  outcome: Failure::ReplyCut, Reached::Yes\n"
          "  the till: it may have been done: repeat the same request, never a new one\n"
          "  repeated: accrued 6, balance 86; once more: balance 86 (booked once)\n",
          "  outcome: Failure::ConnectionLost, Reached::Unknown\n",
          "  repeated: 1 line, 2 reserved (the first answer)\n",
          "  outcome: Failure::ServiceError, Reached::Yes\n"
          "  the till: the back office refused it: show why, do not repeat blindly\n",
          "  outcome: Failure::Refused, Reached::No\n"
          "  the till: nothing left the till: send it again now or later\n"}) {
        EXPECT_TRUE(output.contains(QString::fromUtf8(line))) << line << "\n---\n"
                                                              << output.toStdString();
    }
    EXPECT_TRUE(
        output.endsWith(QStringLiteral("Each failure behaved as the emulator's rules say.\n")))
        << output.toStdString();
}

} // namespace
} // namespace vesk::demo::test
