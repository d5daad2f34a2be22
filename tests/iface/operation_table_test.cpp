// The operation checks that the services' tests use, run on a client made
// for the test, so that the pattern is proven apart from any one service.

#include "support/OperationTable.h"
#include "support/RecordTable.h"
#include "support/TestRecords.h"

#include <vesk/ServiceClient.h>

namespace vesk::test {
namespace {

class EchoApi : public ServiceClient {
public:
    EchoApi()
        : ServiceClient({"Echo:url", "http://127.0.0.1:55555/api/echo/", "veskecho",
                         "vesk::test::EchoApi"}) {}
    virtual PreparedRequest<Reply> echo(const SampleEntry& request) {
        return prepare<Reply>("./echo", request);
    }
};

INSTANTIATE_TEST_SUITE_P(Echo, OperationTableTest,
                         testing::Values(operationRow(&EchoApi::echo, "Echo:url",
                                                      "http://127.0.0.1:55555/api/echo/echo",
                                                      R"({"name": "n", "rank": 2, "qty": 1.5})",
                                                      R"({"text": "t", "count": 3})")),
                         OperationTableTest::rowName);

INSTANTIATE_TEST_SUITE_P(
    TestRecords, RecordTableTest,
    testing::Values(
        recordRow<SampleEntry>({"name", "rank", "qty"}, {"rank", "qty"},
                               R"({"name": "n", "rank": 2, "qty": 1.5})"),
        recordRow<DerivedEntry>({"name", "rank", "qty", "extra", "note"}, {"rank", "qty", "note"},
                                R"({"name": "n", "rank": 2, "qty": 1.5,)"
                                R"( "extra": 0.5, "note": "x"})"),
        recordRow<EveryKind>({"integer", "optionalInteger", "number", "optionalNumber", "quantity",
                              "optionalQuantity", "exactNumber", "boolean", "optionalBoolean",
                              "string", "optionalString", "stringList", "entries",
                              "optionalEntries", "dateTime"},
                             {"integer", "number", "quantity", "exactNumber", "boolean", "string",
                              "stringList", "entries", "dateTime"},
                             R"({"integer": 1, "optionalInteger": 2, "number": 3.5,)"
                             R"( "optionalNumber": 4.25, "quantity": 0.125, "optionalQuantity": 6,)"
                             R"( "exactNumber": 7.5, "boolean": true, "optionalBoolean": false,)"
                             R"( "string": "s", "optionalString": "", "stringList": ["a", "b"],)"
                             R"( "entries": [{"name": "e", "rank": 1, "qty": 2}],)"
                             R"( "optionalEntries": [], "dateTime": "2024-03-01T10:15:00"})",
                             R"({"integer": 1, "optionalInteger": 2, "number": 3.5,)"
                             R"( "optionalNumber": 4.25, "quantity": 0.125, "optionalQuantity": 6,)"
                             R"( "exactNumber": 7.5, "boolean": true, "optionalBoolean": false,)"
                             R"( "string": "s", "optionalString": "", "stringList": ["a", "b"],)"
                             R"( "entries": [{"name": "e", "rank": 1, "qty": 2}],)"
                             R"( "optionalEntries": [], "dateTime": "2024-03-01T10:15:00.000"})")),
    RecordTableTest::rowName);

} // namespace
} // namespace vesk::test
