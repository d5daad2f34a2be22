// Fault rules as the emulator reads them from its command line and from the
// network (its admin API): the text form, the JSON form, and the admin
// route that takes them. A rule that reads must write back into text that
// reads into the same rule.

#include <emulator/AdminApi.h>
#include <emulator/Fault.h>
#include <emulator/FaultRules.h>
#include <emulator/journal/Journal.h>

#include <QByteArray>
#include <QJsonDocument>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vesk::emulator;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QString error;

    if (const std::optional<FaultRule> rule = parseFaultSpec(QString::fromUtf8(bytes), &error)) {
        if (!(parseFaultSpec(faultSpec(*rule), nullptr) == rule))
            __builtin_trap(); // the text form does not give the rule back
        QJsonObject members = faultRuleToJson(*rule);
        members.remove(QStringLiteral("spec"));
        if (!(faultRuleFromJson(members, nullptr) == rule))
            __builtin_trap(); // nor does the JSON form
    } else if (error.isEmpty()) {
        __builtin_trap(); // a refusal says why
    }

    // The admin API's route for rules, with the bytes as its body.
    FaultRules rules;
    Journal journal;
    const AdminApi admin(
        rules, journal, [] { return AdminApi::Health{}; }, [](QString*) { return true; });
    const HttpFront::Answer answer =
        admin.answer(AdminRequest{"POST", "/_emulator/faults", bytes, {}});
    if (answer.status != 201 && answer.status != 400)
        __builtin_trap();
    if ((answer.status == 201) != (rules.list().size() == 1))
        __builtin_trap(); // a rule is added exactly when the answer says so
    if (answer.status == 201)
        rules.take(rules.list().constFirst().rule.operation == QLatin1String("*")
                       ? QStringLiteral("itemInfo")
                       : rules.list().constFirst().rule.operation,
                   bytes);
    return 0;
}
