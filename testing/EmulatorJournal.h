#pragma once

#include <vesk/testing/TestingExport.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <stdexcept>

namespace vesk::testing {

/// A call that a test expects its till to have made: an operation and
/// conditions on its request body, as vesk-emulator's journal takes them
/// (`$.lines[*].barcode == "4601234000017"`, `$.card exists`; see the
/// emulator's README, "The request journal").
struct VESK_TESTING_EXPORT ExpectedCall {
    QString operation; ///< "commitCheque"; empty for any operation
    QStringList where; ///< conditions that must all hold for the body
};

/// What the emulator found. Converts to true when the expectation holds;
/// `message` says what was expected, what was seen and, for a failure, the
/// requests that came closest with the members that differed:
/// @code
/// EXPECT_TRUE(result) << result.message.toStdString();
/// @endcode
struct VESK_TESTING_EXPORT Verified {
    bool verified = false; ///< whether the expectation holds
    qint64 seen = 0;   ///< the calls that matched (for an order, the steps found)
    QString message;   ///< for people, several lines
    QJsonObject reply; ///< the emulator's whole answer, with its near misses

    /// `verified`, so that a test writes EXPECT_TRUE(result).
    explicit operator bool() const { return verified; }
};

/// The emulator could not be asked: none answers, or it refused the question.
class VESK_TESTING_EXPORT EmulatorUnavailable : public std::runtime_error {
public:
    /// Unavailable for the reason in `message`.
    explicit EmulatorUnavailable(const QString& message);
};

/// The request journal of a running vesk-emulator, for a host's own tests
/// that drive a till against it: what the till sent, and whether the calls
/// that the test expects were made.
/// @code
/// vesk::testing::EmulatorJournal journal(QUrl("http://127.0.0.1:55555"));
/// journal.clear();
/// // ... the till sells ...
/// const auto committed = journal.calledExactly(1, {"commitCheque", {R"($.dataId == "C-1")"}});
/// EXPECT_TRUE(committed) << committed.message.toStdString();
/// EXPECT_TRUE(journal.calledInOrder({{"reserveCheque", {}}, {"commitCheque", {}}}));
/// @endcode
/// Each call is one request to the emulator's admin API, through the host's
/// HTTP client (RestClient), synchronous.
class VESK_TESTING_EXPORT EmulatorJournal {
public:
    /// The emulator at `baseUrl`, "http://HOST:PORT".
    explicit EmulatorJournal(const QUrl& baseUrl = QUrl(QStringLiteral("http://127.0.0.1:55555")));

    /// Whether `call` was made exactly `times` times. A question that the
    /// emulator cannot answer comes back not verified, with the reason as its
    /// message.
    Verified calledExactly(qint64 times, const ExpectedCall& call) const;
    /// Whether `call` was made at least `times` times; as calledExactly().
    Verified calledAtLeast(qint64 times, const ExpectedCall& call) const;
    /// Whether `call` was made at most `times` times; as calledExactly().
    Verified calledAtMost(qint64 times, const ExpectedCall& call) const;
    /// Whether the calls were made in this order (others between them allowed).
    Verified calledInOrder(const QList<ExpectedCall>& calls) const;

    /// How many of the journal's requests match `call`.
    /// @throws EmulatorUnavailable
    qint64 count(const ExpectedCall& call = {}) const;
    /// The requests that match `call`, oldest first, as the admin API shows
    /// them (bodies masked).
    /// @throws EmulatorUnavailable
    QJsonArray requests(const ExpectedCall& call = {}) const;
    /// Empties the journal, for a test that starts from none; how many it held.
    /// @throws EmulatorUnavailable
    int clear() const;

private:
    Verified verify(const QJsonObject& question) const;

    QUrl baseUrl_;
};

} // namespace vesk::testing
