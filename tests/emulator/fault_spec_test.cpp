// Fault rules as the command line and the admin API give them: their text,
// their JSON form, and what is refused.

#include <emulator/Fault.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

struct GoodSpec {
    const char* spec;
    const char* canonical; // what faultSpec() writes back
    Fault::Kind kind;
    int status;
    int code;
    const char* userMsg;
    int ms;
    qint64 bytes;
    FaultRule::When when;
    qint64 times;
    double fraction;
    bool after = false;
};

void PrintTo(const GoodSpec& row, std::ostream* out) {
    *out << row.spec;
}

class FaultSpecReads : public testing::TestWithParam<GoodSpec> {};

TEST_P(FaultSpecReads, IntoTheRuleAndBackToItsText) {
    const GoodSpec& row = GetParam();
    QString error;
    const std::optional<FaultRule> rule = parseFaultSpec(QString::fromUtf8(row.spec), &error);
    ASSERT_TRUE(rule) << error.toStdString();
    EXPECT_EQ(rule->fault.kind, row.kind);
    EXPECT_EQ(rule->fault.status, row.status);
    EXPECT_EQ(rule->fault.code, row.code);
    EXPECT_EQ(rule->fault.userMsg, QString::fromUtf8(row.userMsg));
    EXPECT_EQ(rule->fault.ms, row.ms);
    EXPECT_EQ(rule->fault.bytes, row.bytes);
    EXPECT_EQ(rule->when, row.when);
    EXPECT_EQ(rule->times, row.times);
    EXPECT_EQ(rule->fraction, row.fraction);
    EXPECT_EQ(rule->fault.after, row.after);
    EXPECT_EQ(faultSpec(*rule), QString::fromUtf8(row.canonical));
    EXPECT_EQ(parseFaultSpec(faultSpec(*rule), nullptr), rule);
    // The admin API's members form reads back into the same rule.
    QJsonObject members = faultRuleToJson(*rule);
    EXPECT_EQ(members.take(QStringLiteral("spec")).toString(), faultSpec(*rule));
    EXPECT_EQ(faultRuleFromJson(members, &error), rule) << error.toStdString();
}

using K = Fault::Kind;
using W = FaultRule::When;
INSTANTIATE_TEST_SUITE_P(
    EveryKindAndCondition, FaultSpecReads,
    testing::Values(GoodSpec{"itemInfo:error=500,code=7,msg=Out of stock;times=2",
                             "itemInfo:error=500,code=7,msg=Out of stock;times=2", K::Error, 500, 7,
                             "Out of stock", 0, 0, W::Times, 2, 1},
                    GoodSpec{"discCalc:error=503", "discCalc:error=503,code=503,msg=Injected fault",
                             K::Error, 503, 503, "Injected fault", 0, 0, W::Always, 0, 1},
                    GoodSpec{"*:error=400,msg=a\\, b\\; c\\\\",
                             "*:error=400,code=400,msg=a\\, b\\; c\\\\", K::Error, 400, 400,
                             "a, b; c\\", 0, 0, W::Always, 0, 1},
                    GoodSpec{"processId:delay=250", "processId:delay=250", K::Delay, 0, 0, "", 250,
                             0, W::Always, 0, 1},
                    GoodSpec{"commitCheque:hang", "commitCheque:hang=300000", K::Hang, 0, 0, "",
                             300000, 0, W::Always, 0, 1},
                    GoodSpec{"commitCheque:hang=2000;always", "commitCheque:hang=2000", K::Hang, 0,
                             0, "", 2000, 0, W::Always, 0, 1},
                    GoodSpec{"getCardBalance:notjson;fraction=0.25,seed=9",
                             "getCardBalance:notjson;fraction=0.25,seed=9", K::NotJson, 0, 0, "", 0,
                             0, W::Fraction, 0, 0.25},
                    GoodSpec{"reserveCheque:truncate;times=1", "reserveCheque:truncate;times=1",
                             K::Truncate, 0, 0, "", 0, 0, W::Times, 1, 1},
                    GoodSpec{"itemInfo:oversize", "itemInfo:oversize=8388608", K::Oversize, 0, 0,
                             "", 0, 8388608, W::Always, 0, 1},
                    GoodSpec{"itemInfo:oversize=5000000", "itemInfo:oversize=5000000", K::Oversize,
                             0, 0, "", 0, 5000000, W::Always, 0, 1},
                    GoodSpec{"unreserveCheque:reset", "unreserveCheque:reset", K::Reset, 0, 0, "",
                             0, 0, W::Always, 0, 1}));

INSTANTIATE_TEST_SUITE_P(
    AfterTheOperation, FaultSpecReads,
    testing::Values(GoodSpec{"commitCheque:reset,after;times=1", "commitCheque:reset,after;times=1",
                             K::Reset, 0, 0, "", 0, 0, W::Times, 1, 1, true},
                    GoodSpec{"reserveCheque:truncate,after", "reserveCheque:truncate,after",
                             K::Truncate, 0, 0, "", 0, 0, W::Always, 0, 1, true},
                    GoodSpec{"calcAndReserveBonusPay:hang,after",
                             "calcAndReserveBonusPay:hang=300000,after", K::Hang, 0, 0, "", 300000,
                             0, W::Always, 0, 1, true},
                    GoodSpec{"*:hang=1500,after;fraction=0.5",
                             "*:hang=1500,after;fraction=0.5,seed=1", K::Hang, 0, 0, "", 1500, 0,
                             W::Fraction, 0, 0.5, true}));

struct BadSpec {
    const char* spec;
    const char* error;
};

void PrintTo(const BadSpec& row, std::ostream* out) {
    *out << row.spec;
}

class FaultSpecRefuses : public testing::TestWithParam<BadSpec> {};

TEST_P(FaultSpecRefuses, WithWhatIsWrong) {
    QString error;
    EXPECT_FALSE(parseFaultSpec(QString::fromUtf8(GetParam().spec), &error));
    EXPECT_EQ(error.toStdString(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    BadText, FaultSpecRefuses,
    testing::Values(
        BadSpec{"", "empty: expected OPERATION:FAULT[;WHEN][;where=CONDITION]..."},
        BadSpec{"itemInfo", "no ':': expected OPERATION:FAULT[;WHEN][;where=CONDITION]..."},
        BadSpec{"itemInfo:",
                "no fault after ':': expected OPERATION:FAULT[;WHEN][;where=CONDITION]..."},
        BadSpec{"itemlnfo:reset",
                "unknown operation \"itemlnfo\" (an operation's name, such as itemInfo, or *)"},
        BadSpec{"itemInfo:explode", "unknown fault \"explode\" (error, delay, hang, notjson, "
                                    "truncate, oversize, reset, dribble or stall)"},
        BadSpec{"itemInfo:dribble", "dribble needs a value: dribble=MS"},
        BadSpec{"itemInfo:dribble=100,chunks=0",
                "chunks: \"0\" is not a whole number from 1 to 10000"},
        BadSpec{"itemInfo:stall=0", "stall: \"0\" is not a whole number from 1 to 3600000"},
        BadSpec{"itemInfo:stall,after", "stall does not take \"after\""},
        BadSpec{"itemInfo:error", "error needs a value: error=STATUS"},
        BadSpec{"itemInfo:error=200", "error: \"200\" is not a whole number from 400 to 599"},
        BadSpec{"itemInfo:delay=-1", "delay: \"-1\" is not a whole number from 0 to 600000"},
        BadSpec{"itemInfo:reset=5", "reset takes no value"},
        BadSpec{"itemInfo:delay=5,code=1", "delay does not take \"code\""},
        BadSpec{"itemInfo:error=500,code=1,code=2", "\"code\" is given twice"},
        BadSpec{"itemInfo:reset;times=0",
                "times: \"0\" is not a whole number from 1 to 1000000000"},
        BadSpec{"itemInfo:reset;fraction=1.5",
                "fraction: \"1.5\" is not a number above 0 and at most 1"},
        BadSpec{"itemInfo:reset;sometimes",
                "unknown condition \"sometimes\" (times=N, fraction=F[,seed=S] or always)"},
        BadSpec{"itemInfo:reset;times=1;always", "one WHEN at most, before any where=: expected "
                                                 "OPERATION:FAULT[;WHEN][;where=CONDITION]..."},
        BadSpec{"commitCheque:reset;where=$.dataId == \"C-1\";times=1",
                "one WHEN at most, before any where=: expected "
                "OPERATION:FAULT[;WHEN][;where=CONDITION]..."},
        BadSpec{"commitCheque:reset;where=dataId == 1",
                "where: expected a path starting with $ (such as $.lines[*].barcode) at column 1"},
        BadSpec{"commitCheque:reset;where=$.dataId = 1",
                "where: expected ==, !=, <, <=, >, >=, ~=, exists or absent after $.dataId at "
                "column 10"},
        BadSpec{"itemInfo:error=500,msg=trailing\\", "a '\\' ends the text: nothing to escape"},
        BadSpec{"commitCheque:reset,after=1", "after takes no value"},
        BadSpec{"commitCheque:reset,after,after", "\"after\" is given twice"},
        BadSpec{"commitCheque:error=500,after", "error does not take \"after\""},
        BadSpec{"commitCheque:delay=5,after", "delay does not take \"after\""},
        BadSpec{"commitCheque:notjson,after", "notjson does not take \"after\""},
        BadSpec{"commitCheque:oversize,after", "oversize does not take \"after\""},
        // "after" belongs to the fault, not to when it fires.
        BadSpec{"commitCheque:reset;after",
                "unknown condition \"after\" (times=N, fraction=F[,seed=S] or always)"}));

TEST(FaultSpecSlowWires, DribbleAndStallReadAndAreWrittenBack) {
    QString error;
    const std::optional<FaultRule> dribble =
        parseFaultSpec(QStringLiteral("itemInfo:dribble=2000,chunks=8;times=1"), &error);
    ASSERT_TRUE(dribble) << error.toStdString();
    EXPECT_EQ(dribble->fault.kind, Fault::Kind::Dribble);
    EXPECT_EQ(dribble->fault.ms, 2000);
    EXPECT_EQ(dribble->fault.chunks, 8);
    EXPECT_EQ(faultSpec(*dribble), "itemInfo:dribble=2000,chunks=8;times=1");
    EXPECT_EQ(parseFaultSpec(QStringLiteral("itemInfo:dribble=500"), &error)->fault.chunks, 10);
    const std::optional<FaultRule> stall = parseFaultSpec(QStringLiteral("itemInfo:stall"), &error);
    ASSERT_TRUE(stall) << error.toStdString();
    EXPECT_EQ(stall->fault.ms, 300000);
    EXPECT_EQ(faultSpec(*stall), "itemInfo:stall=300000");
    const std::optional<FaultRule> fromJson = faultRuleFromJson(
        QJsonDocument::fromJson(
            R"({"operation": "itemInfo", "fault": "dribble", "ms": 900, "chunks": 3})")
            .object(),
        &error);
    ASSERT_TRUE(fromJson) << error.toStdString();
    EXPECT_EQ(faultSpec(*fromJson), "itemInfo:dribble=900,chunks=3");
    EXPECT_EQ(faultRuleToJson(*fromJson).value("chunks").toInt(), 3);
}

struct DrawnDelay {
    const char* name;
    const char* spec;
    const char* canonical; // what faultSpec() writes back
    const char* json;      // faultRuleToJson() without "spec"
};

void PrintTo(const DrawnDelay& row, std::ostream* out) {
    *out << row.spec;
}

class DrawnDelayReads : public testing::TestWithParam<DrawnDelay> {};

TEST_P(DrawnDelayReads, IntoTheRuleItsTextAndItsJson) {
    const DrawnDelay& row = GetParam();
    QString error;
    const std::optional<FaultRule> rule = parseFaultSpec(QString::fromUtf8(row.spec), &error);
    ASSERT_TRUE(rule) << error.toStdString();
    EXPECT_EQ(faultSpec(*rule), QString::fromUtf8(row.canonical));
    EXPECT_EQ(parseFaultSpec(faultSpec(*rule), nullptr), rule);
    QJsonObject members = faultRuleToJson(*rule);
    EXPECT_EQ(members.take(QStringLiteral("spec")).toString(), faultSpec(*rule));
    EXPECT_EQ(QJsonDocument(members).toJson(QJsonDocument::Compact).toStdString(), row.json);
    EXPECT_EQ(faultRuleFromJson(members, &error), rule) << error.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    FixedUniformAndLogNormal, DrawnDelayReads,
    testing::Values(
        DrawnDelay{"FixedIsThePlainForm", "itemInfo:delay=fixed:250", "itemInfo:delay=250",
                   R"({"fault":"delay","ms":250,"operation":"itemInfo"})"},
        DrawnDelay{"Uniform", "itemInfo:delay=uniform:20-200",
                   "itemInfo:delay=uniform:20-200,seed=1",
                   R"({"distribution":"uniform","fault":"delay","max":200,"min":20,)"
                   R"("operation":"itemInfo","seed":1})"},
        DrawnDelay{"LogNormalSeeded", "*:delay=lognormal:80,sigma=0.4,seed=7",
                   "*:delay=lognormal:80,sigma=0.4,seed=7",
                   R"({"distribution":"lognormal","fault":"delay","median":80,"operation":"*",)"
                   R"("seed":7,"sigma":0.4})"},
        DrawnDelay{"WithAFractionTheSeedGoesWithIt",
                   "processId:delay=uniform:5-9;fraction=0.5,seed=3",
                   "processId:delay=uniform:5-9;fraction=0.5,seed=3",
                   R"({"distribution":"uniform","fault":"delay","fraction":0.5,"max":9,"min":5,)"
                   R"("operation":"processId","seed":3})"},
        DrawnDelay{"AimedAndCounted",
                   R"(itemInfo:delay=lognormal:100,seed=2,sigma=1;times=3;where=$.barcode == "1")",
                   R"(itemInfo:delay=lognormal:100,sigma=1,seed=2;times=3;where=$.barcode == "1")",
                   R"({"distribution":"lognormal","fault":"delay","median":100,)"
                   R"("operation":"itemInfo","seed":2,"sigma":1,"times":3,)"
                   R"("where":["$.barcode == \"1\""]})"}),
    [](const testing::TestParamInfo<DrawnDelay>& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    BadDrawnDelay, FaultSpecRefuses,
    testing::Values(
        BadSpec{"itemInfo:delay=uniform:50-20",
                "uniform's MAX: \"20\" is not a whole number from 50 to 600000"},
        BadSpec{"itemInfo:delay=uniform:50",
                "delay: \"uniform:50\" is not MS, fixed:MS, uniform:MIN-MAX or "
                "lognormal:MEDIAN,sigma=F"},
        BadSpec{"itemInfo:delay=gauss:5", "delay: \"gauss:5\" is not MS, fixed:MS, "
                                          "uniform:MIN-MAX or lognormal:MEDIAN,sigma=F"},
        BadSpec{"itemInfo:delay=lognormal:80",
                "lognormal needs its spread: lognormal:MEDIAN,sigma=F"},
        BadSpec{"itemInfo:delay=lognormal:80,sigma=0",
                "sigma: \"0\" is not a number above 0 and at most 5"},
        BadSpec{"itemInfo:delay=lognormal:0,sigma=1",
                "lognormal's MEDIAN: \"0\" is not a whole number from 1 to 600000"},
        BadSpec{"itemInfo:delay=uniform:1-2,sigma=1", "delay does not take \"sigma\""},
        BadSpec{"itemInfo:delay=5,seed=1", "delay does not take \"seed\""},
        BadSpec{"itemInfo:delay=uniform:1-2,seed=1;fraction=0.5,seed=2",
                "seed is given twice: the fraction and the delay draw from one generator"}));

TEST(FaultRuleJson, DrawnDelayMembersAreCheckedTogether) {
    const auto refusal = [](const char* json) {
        QString error;
        EXPECT_FALSE(faultRuleFromJson(QJsonDocument::fromJson(json).object(), &error)) << json;
        return error.toStdString();
    };
    EXPECT_EQ(
        refusal(R"({"operation":"itemInfo","fault":"delay","distribution":"uniform","min":5})"),
        "\"min\" and \"max\" go together, with \"distribution\": \"uniform\"");
    EXPECT_EQ(refusal(R"({"operation":"itemInfo","fault":"delay","median":5,"sigma":1})"),
              "\"median\" and \"sigma\" go together, with \"distribution\": \"lognormal\"");
    EXPECT_EQ(refusal(R"({"operation":"itemInfo","fault":"hang","distribution":"uniform"})"),
              "\"distribution\" is \"uniform\" or \"lognormal\", for a delay");
    EXPECT_EQ(refusal(R"({"operation":"itemInfo","fault":"delay","ms":5,)"
                      R"("distribution":"uniform","min":1,"max":2})"),
              "a drawn delay does not take \"ms\"");
    EXPECT_EQ(refusal(R"({"operation":"itemInfo","fault":"delay","ms":5,"seed":1})"),
              "\"seed\" is only for \"fraction\" and a drawn delay");
}

TEST(FaultSpecWhere, AimsTheRuleAndIsWrittenBack) {
    QString error;
    const std::optional<FaultRule> rule = parseFaultSpec(
        QStringLiteral(
            R"(commitCheque:reset,after;times=1;where=$.dataId == "C-1";where=$.lines[*].qty > 1)"),
        &error);
    ASSERT_TRUE(rule) << error.toStdString();
    ASSERT_EQ(rule->where.size(), 2);
    EXPECT_EQ(rule->where[0].text(), R"($.dataId == "C-1")");
    EXPECT_EQ(rule->when, FaultRule::When::Times);
    EXPECT_EQ(
        faultSpec(*rule),
        R"(commitCheque:reset,after;times=1;where=$.dataId == "C-1";where=$.lines[*].qty > 1)");
    EXPECT_EQ(*parseFaultSpec(faultSpec(*rule), &error), *rule);
}

TEST(FaultSpecWhere, ACommaOrSemicolonInAValueIsEscapedInTheText) {
    QString error;
    const std::optional<FaultRule> rule =
        parseFaultSpec(QStringLiteral(R"(itemInfo:notjson;where=$.barcode == "a\;b\,c")"), &error);
    ASSERT_TRUE(rule) << error.toStdString();
    EXPECT_EQ(rule->where[0].text(), R"($.barcode == "a;b,c")");
    EXPECT_EQ(faultSpec(*rule), R"(itemInfo:notjson;where=$.barcode == "a\;b\,c")");
    EXPECT_EQ(*parseFaultSpec(faultSpec(*rule), &error), *rule);
}

TEST(FaultRuleJson, WhereTakesConditionsInEitherForm) {
    QString error;
    const std::optional<FaultRule> rule = faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "commitCheque", "fault": "reset", "times": 1,
            "where": ["$.dataId == \"C-1\"", {"path": "$.card", "op": "exists"}]})")
            .object(),
        &error);
    ASSERT_TRUE(rule) << error.toStdString();
    EXPECT_EQ(faultSpec(*rule),
              R"(commitCheque:reset;times=1;where=$.dataId == "C-1";where=$.card exists)");
    const QJsonObject json = faultRuleToJson(*rule);
    EXPECT_EQ(QJsonDocument(json.value("where").toArray()).toJson(QJsonDocument::Compact),
              R"(["$.dataId == \"C-1\"","$.card exists"])");
    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "itemInfo", "fault": "reset", "where": ["$.x"]})")
            .object(),
        &error));
    EXPECT_EQ(error.toStdString(),
              "where: bad condition \"$.x\": expected ==, !=, <, <=, >, >=, ~=, exists or absent "
              "after $.x at column 4");
}

TEST(FaultRuleJson, MembersFormReadsAsTheTextWould) {
    QString error;
    const std::optional<FaultRule> rule = faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "itemInfo", "fault": "error", "status": 500,
                                    "code": 7, "msg": "Out, of; stock", "times": 2})")
            .object(),
        &error);
    ASSERT_TRUE(rule) << error.toStdString();
    EXPECT_EQ(faultSpec(*rule),
              QStringLiteral("itemInfo:error=500,code=7,msg=Out\\, of\\; stock;times=2"));
    const std::optional<FaultRule> fromSpec = faultRuleFromJson(
        QJsonObject{{QStringLiteral("spec"), QStringLiteral("itemInfo:delay=10")}}, &error);
    ASSERT_TRUE(fromSpec) << error.toStdString();
    EXPECT_EQ(fromSpec->fault.ms, 10);
}

TEST(FaultRuleJson, AfterMemberPlaysTheFaultOnceTheOperationIsDone) {
    QString error;
    const std::optional<FaultRule> hang = faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "commitCheque", "fault": "hang", "ms": 2000,
                                    "after": true, "times": 1})")
            .object(),
        &error);
    ASSERT_TRUE(hang) << error.toStdString();
    EXPECT_TRUE(hang->fault.after);
    EXPECT_EQ(faultSpec(*hang), QStringLiteral("commitCheque:hang=2000,after;times=1"));
    EXPECT_EQ(faultRuleToJson(*hang),
              (QJsonObject{{"operation", "commitCheque"},
                           {"fault", "hang"},
                           {"ms", 2000},
                           {"after", true},
                           {"times", 1},
                           {"spec", "commitCheque:hang=2000,after;times=1"}}));
    // false is the fault as it always was, listed without the member.
    const std::optional<FaultRule> reset =
        faultRuleFromJson(QJsonDocument::fromJson(R"({"operation": "commitCheque", "fault": "reset",
                                    "after": false})")
                              .object(),
                          &error);
    ASSERT_TRUE(reset) << error.toStdString();
    EXPECT_EQ(reset, parseFaultSpec(QStringLiteral("commitCheque:reset"), nullptr));
    EXPECT_FALSE(faultRuleToJson(*reset).contains(QStringLiteral("after")));

    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "commitCheque", "fault": "reset", "after": 1})")
            .object(),
        &error));
    EXPECT_EQ(error, QStringLiteral("\"after\" must be true or false"));
    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(
            R"({"operation": "commitCheque", "fault": "error", "status": 500, "after": true})")
            .object(),
        &error));
    EXPECT_EQ(error, QStringLiteral("error does not take \"after\""));
}

TEST(FaultRuleJson, RefusesUnknownMembersAndWrongTypes) {
    QString error;
    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "itemInfo", "fault": "reset", "when": 1})")
            .object(),
        &error));
    EXPECT_EQ(error, QStringLiteral("unknown member \"when\""));
    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "itemInfo", "fault": "delay", "ms": "5"})")
            .object(),
        &error));
    EXPECT_EQ(error, QStringLiteral("\"ms\" must be a number"));
    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "itemInfo", "fault": "delay", "bytes": 5})")
            .object(),
        &error));
    EXPECT_EQ(error, QStringLiteral("delay does not take \"bytes\""));
    // A number far beyond 64 bits is refused like any other out of range.
    EXPECT_FALSE(faultRuleFromJson(
        QJsonDocument::fromJson(R"({"operation": "itemInfo", "fault": "delay", "ms": 2e109})")
            .object(),
        &error));
    EXPECT_EQ(error, QStringLiteral("delay: \"2e+109\" is not a whole number from 0 to 600000"));
    EXPECT_FALSE(
        faultRuleFromJson(QJsonDocument::fromJson(R"({"fault": "reset"})").object(), &error));
    EXPECT_EQ(error, QStringLiteral("\"operation\" and \"fault\" are required"));
}

} // namespace
} // namespace vesk::emulator::test
