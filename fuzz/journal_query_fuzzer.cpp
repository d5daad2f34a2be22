// What the emulator's admin API reads about its journal from the network:
// conditions on bodies, filters and verifications, each asked of a journal
// that holds a few requests. A condition that reads must write back into
// text that reads into the same condition.

#include <emulator/AdminApi.h>
#include <emulator/FaultRules.h>
#include <emulator/journal/Journal.h>
#include <emulator/matching/Condition.h>

#include <QByteArray>
#include <QJsonObject>

#include <cstddef>
#include <cstdint>

namespace {

using namespace vesk::emulator;

void fill(Journal& journal) {
    journal.add(JournalEntry::arrived(1795942800000, QStringLiteral("itemInfo"),
                                      R"({"barcode": "4601234000017"})", QString()));
    const qint64 commit = journal.add(JournalEntry::arrived(
        1795942801000, QStringLiteral("commitCheque"),
        R"({"dataId": "C-1", "card": "2775000000011", "lines": [{"qty": 2, "price": 1.5}]})",
        QStringLiteral("reset")));
    journal.complete(commit, 0, std::nullopt, 3, QString());
    journal.add(
        JournalEntry::arrived(1795942802000, QStringLiteral("checkPin"), "[1, 2", QString()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QString error;
    if (const std::optional<Condition> condition =
            Condition::parse(QString::fromUtf8(bytes), &error)) {
        const std::optional<Condition> again = Condition::parse(condition->text(), nullptr);
        if (!again || again->text() != condition->text())
            __builtin_trap(); // the written text does not give the condition back
        condition->holdsFor(QJsonObject{{QStringLiteral("x"), 1}});
    } else if (error.isEmpty()) {
        __builtin_trap(); // a refusal says why
    }

    FaultRules rules;
    Journal journal;
    fill(journal);
    const AdminApi admin(
        rules, journal, [] { return AdminApi::Health{}; }, [](QString*) { return true; });
    for (const char* path : {"/_emulator/verify", "/_emulator/requests/find"}) {
        const HttpFront::Answer answer = admin.answer(AdminRequest{"POST", path, bytes, {}});
        if (answer.status != 200 && answer.status != 400 && answer.status != 409)
            __builtin_trap();
        if (answer.status != 200 &&
            answer.object.value(QStringLiteral("userMsg")).toString().isEmpty())
            __builtin_trap(); // every refusal and failure says why
    }
    // The bytes as a query's one condition.
    admin.answer(AdminRequest{"GET", "/_emulator/requests", QByteArray(),
                              QJsonObject{{QStringLiteral("where"), QString::fromUtf8(bytes)}}});
    return 0;
}
