// Performing a prepared request over a scripted HTTP client: what is sent,
// and how each reply becomes a result or an exception.

#include "support/ConfigScope.h"
#include "support/Json.h"
#include "support/ScriptedRestClient.h"
#include "support/SubstituteApi.h"
#include "support/TestRecords.h"

#include <vesk/NetworkException.h>
#include <vesk/PreparedRequest.h>
#include <vesk/vesk.h>

#include <QMetaProperty>

#include <gtest/gtest.h>

namespace vesk {
namespace {

using test::ScriptedRestClient;

class PreparedRequestTest : public testing::Test {
protected:
    PreparedRequestTest() {
        scripted = new ScriptedRestClient();
        request.client = QSharedPointer<RestClient>(scripted);
        request.url = QStringLiteral("http://127.0.0.1:55555/api/x/op");
        request.body = QVariantMap{{"a", 1}};
    }

    ScriptedRestClient* scripted; // owned by request.client
    PreparedRequestBase request;
};

TEST_F(PreparedRequestTest, Status200WithObjectYieldsTheMap) {
    scripted->answer(200, R"({"a": 1})");
    const QVariant result = request.getResponseVariant();
    EXPECT_EQ(result.metaType(), QMetaType::fromType<QVariantMap>());
    EXPECT_EQ(test::compactJson(result), R"({"a":1})");
}

class UnparsableSuccessTest : public testing::TestWithParam<std::pair<const char*, QByteArray>> {};

TEST_P(UnparsableSuccessTest, YieldsAnEmptyMapWithoutException) {
    auto* scripted = new ScriptedRestClient();
    PreparedRequestBase request;
    request.client = QSharedPointer<RestClient>(scripted);
    scripted->answer(200, GetParam().second);
    const QVariant result = request.getResponseVariant();
    EXPECT_EQ(result.metaType(), QMetaType::fromType<QVariantMap>());
    EXPECT_TRUE(result.toMap().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Bodies, UnparsableSuccessTest,
                         testing::Values(std::make_pair("empty", QByteArray()),
                                         std::make_pair("not_json", QByteArray("<html>")),
                                         std::make_pair("json_array", QByteArray("[1,2]")),
                                         std::make_pair("json_string", QByteArray("\"s\""))),
                         [](const auto& info) { return std::string(info.param.first); });

TEST_F(PreparedRequestTest, PostsCompactJsonOfTheBodyToTheUrl) {
    request.body = QVariantMap{{"b", QVariantList{1, "two"}}, {"a", QVariantMap{{"c", true}}}};
    request.getResponseVariant();
    ASSERT_EQ(scripted->sent.size(), 1u);
    const http::Request& sent = scripted->sent[0];
    EXPECT_EQ(sent.method, QByteArray("POST"));
    EXPECT_EQ(sent.url, QUrl(QStringLiteral("http://127.0.0.1:55555/api/x/op")));
    EXPECT_EQ(sent.body, QByteArray(R"({"a":{"c":true},"b":[1,"two"]})"));
    EXPECT_TRUE(sent.headers.isEmpty());
    EXPECT_TRUE(sent.parts.isEmpty());
}

TEST_F(PreparedRequestTest, NullBodyIsPostedAsEmptyObject) {
    request.body = QVariant();
    request.getResponseVariant();
    ASSERT_EQ(scripted->sent.size(), 1u);
    EXPECT_EQ(scripted->sent[0].body, QByteArray("{}"));
}

TEST_F(PreparedRequestTest, BodyThatHoldsNoMapIsPostedAsEmptyObject) {
    request.body = QVariantList{1, 2};
    request.getResponseVariant();
    EXPECT_EQ(scripted->sent[0].body, QByteArray("{}"));
}

TEST_F(PreparedRequestTest, PerformingTwicePostsTwice) {
    request.getResponseVariant();
    request.getResponseVariant();
    EXPECT_EQ(scripted->sent.size(), 2u);
    EXPECT_EQ(scripted->responsesTaken, 2);
}

// Replies that are not success: the exception and what it carries.
struct FailureCase {
    const char* name;
    int status;
    QByteArray body;
    http::Response::Failure failure;
    bool network;
    int code;
    const char* message;
};

class ReplyFailureTest : public testing::TestWithParam<FailureCase> {};

TEST_P(ReplyFailureTest, RaisesTheMatchingException) {
    const FailureCase& c = GetParam();
    auto* scripted = new ScriptedRestClient();
    PreparedRequestBase request;
    request.client = QSharedPointer<RestClient>(scripted);
    if (c.failure == http::Response::Failure::None) {
        scripted->answer(c.status, c.body);
    } else {
        scripted->failWith(c.failure, QStringLiteral("transport said no"), c.status);
        scripted->next.body = c.body;
    }
    try {
        request.getResponseVariant();
        FAIL() << "no exception";
    } catch (const NetworkException& e) {
        EXPECT_TRUE(c.network);
        EXPECT_EQ(e.code(), 0);
        EXPECT_EQ(e.message().text(), QString::fromUtf8(c.message));
    } catch (const Exception& e) {
        EXPECT_FALSE(c.network);
        EXPECT_EQ(e.code(), c.code);
        EXPECT_EQ(e.message().text(), QString::fromUtf8(c.message));
    }
}

using F = http::Response::Failure;

INSTANTIATE_TEST_SUITE_P(
    Replies, ReplyFailureTest,
    testing::Values(
        FailureCase{"status500_code_and_message", 500, R"({"userMsg": "Нет товара", "code": 17})",
                    F::None, false, 17, "Нет товара"},
        FailureCase{"status400_not_json", 400, "oops", F::None, false, 0, ""},
        FailureCase{"status400_json_array", 400, R"([{"code": 3}])", F::None, false, 0, ""},
        FailureCase{"status400_code_as_string", 400, R"({"code": "17"})", F::None, false, 0, ""},
        FailureCase{"status400_code_with_fraction", 400, R"({"code": 17.5})", F::None, false, 0,
                    ""},
        FailureCase{"status400_code_17_0", 400, R"({"code": 17.0})", F::None, false, 17, ""},
        FailureCase{"status400_code_above_int_range", 400, R"({"code": 2147483648})", F::None,
                    false, 0, ""},
        FailureCase{"status400_code_below_int_range", 400, R"({"code": -2147483649})", F::None,
                    false, 0, ""},
        FailureCase{"status400_code_int_minimum", 400, R"({"code": -2147483648})", F::None, false,
                    -2147483647 - 1, ""},
        FailureCase{"status400_user_msg_not_string", 400, R"({"userMsg": 5, "code": 1})", F::None,
                    false, 1, ""},
        FailureCase{"status400_user_msg_null", 400, R"({"userMsg": null})", F::None, false, 0, ""},
        FailureCase{"status201_is_not_success", 201, R"({"a": 1})", F::None, false, 0, ""},
        FailureCase{"status204_is_not_success", 204, "", F::None, false, 0, ""},
        FailureCase{"status404_with_error_body", 404, R"({"userMsg": "No such path", "code": 404})",
                    F::None, false, 404, "No such path"},
        FailureCase{"network_error_ignores_body", 0, R"({"userMsg": "x", "code": 9})", F::Network,
                    true, 0, "transport said no"},
        FailureCase{"content_error_ignores_body", 0, R"({"userMsg": "x", "code": 9})", F::Content,
                    true, 0, "transport said no"},
        FailureCase{"network_error_with_status_500", 500, R"({"code": 9})", F::Network, true, 0,
                    "transport said no"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(PreparedRequestTest, Status200IsSuccessEvenWhenTheTransportReportsAFailure) {
    scripted->failWith(http::Response::Failure::Network, QStringLiteral("x"), 200);
    scripted->next.body = R"({"ok": true})";
    EXPECT_EQ(test::compactJson(request.getResponseVariant()), R"({"ok":true})");
}

TEST_F(PreparedRequestTest, PerformingDoesNotChangeThePreparedRequest) {
    scripted->answer(500, R"({"code": 1})");
    EXPECT_THROW(request.getResponseVariant(), Exception);
    EXPECT_EQ(request.url, QStringLiteral("http://127.0.0.1:55555/api/x/op"));
    EXPECT_EQ(request.body, QVariant(QVariantMap{{"a", 1}}));
    EXPECT_EQ(request.client.data(), scripted);
}

TEST(PreparedRequestProperties, AreUrlThenBodyBothVariants) {
    const QMetaObject& type = PreparedRequestBase::staticMetaObject;
    ASSERT_EQ(type.propertyCount(), 2);
    EXPECT_STREQ(type.property(0).name(), "url");
    EXPECT_STREQ(type.property(1).name(), "body");
    EXPECT_EQ(type.property(0).metaType(), QMetaType::fromType<QVariant>());
    EXPECT_EQ(type.property(1).metaType(), QMetaType::fromType<QVariant>());
}

TEST(PreparedRequestProperties, UrlIsWrittenAsTextAndReadAsString) {
    PreparedRequestBase request;
    const QMetaProperty url = PreparedRequestBase::staticMetaObject.property(0);
    url.writeOnGadget(&request, QUrl(QStringLiteral("http://h/p")));
    EXPECT_EQ(request.url, QStringLiteral("http://h/p"));
    url.writeOnGadget(&request, QVariantList{1});
    EXPECT_EQ(request.url, QString());
    request.url = QStringLiteral("http://x/");
    EXPECT_EQ(url.readOnGadget(&request), QVariant(QStringLiteral("http://x/")));
}

TEST(PreparedRequestProperties, BodyIsStoredAndANestedVariantIsUnwrappedOnce) {
    PreparedRequestBase request;
    const QMetaProperty body = PreparedRequestBase::staticMetaObject.property(1);
    const QVariant map = QVariantMap{{"k", "v"}};
    body.writeOnGadget(&request, QVariant::fromValue(map));
    EXPECT_EQ(request.body, map);
    body.writeOnGadget(&request, QVariant::fromValue(QVariant::fromValue(map)));
    EXPECT_EQ(request.body, QVariant::fromValue(map));
    EXPECT_EQ(body.readOnGadget(&request), request.body);
}

// A typed prepared request keeps the record that its first performance gave.
using test::Reply;

TEST(TypedPreparedRequest, ResponsePerformsOnceAndKeepsTheRecord) {
    auto* scripted = new ScriptedRestClient();
    PreparedRequest<Reply> request;
    request.client = QSharedPointer<RestClient>(scripted);
    scripted->answer(200, R"({"text": "hi", "count": 2, "other": 1})");
    EXPECT_FALSE(request.keptResponse().has_value());
    const Reply& first = request.response();
    EXPECT_EQ(first.text, QStringLiteral("hi"));
    EXPECT_EQ(first.count, 2);
    scripted->answer(200, R"({"text": "again"})");
    EXPECT_EQ(request.response().text, QStringLiteral("hi"));
    EXPECT_EQ(scripted->sent.size(), 1u);
    EXPECT_EQ(test::compactJson(request.getResponseVariant()), R"({"text":"again"})");
    EXPECT_EQ(scripted->sent.size(), 2u);
}

TEST(TypedPreparedRequest, ResponseRaisesWhatTheCallRaisesAndKeepsNothing) {
    auto* scripted = new ScriptedRestClient();
    PreparedRequest<Reply> request;
    request.client = QSharedPointer<RestClient>(scripted);
    scripted->answer(400, R"({"code": 4, "userMsg": "bad"})");
    EXPECT_THROW(request.response(), Exception);
    EXPECT_FALSE(request.keptResponse().has_value());
    scripted->answer(200, R"({"count": 1})");
    EXPECT_EQ(request.response().count, 1);
}

TEST(TypedPreparedRequest, CopiesShareTheClient) {
    auto* scripted = new ScriptedRestClient();
    PreparedRequest<Reply> request;
    request.client = QSharedPointer<RestClient>(scripted);
    const PreparedRequest<Reply> copy = request;
    EXPECT_EQ(copy.client.data(), scripted);
    request = PreparedRequest<Reply>();
    EXPECT_EQ(ScriptedRestClient::liveInstances, 1);
}

// The accessor keeps and lends the record on a named prepared request, and
// hands a temporary's record out by value, so that the one-line call cannot
// keep a reference into a destroyed prepared request.
static_assert(
    std::is_same_v<decltype(std::declval<PreparedRequest<Reply>&>().response()), const Reply&>);
static_assert(std::is_same_v<decltype(std::declval<PreparedRequest<Reply>>().response()), Reply>);

PreparedRequest<Reply> preparedOver(ScriptedRestClient* scripted) {
    PreparedRequest<Reply> request;
    request.client = QSharedPointer<RestClient>(scripted);
    return request;
}

TEST(TypedPreparedRequest, OneLineCallKeepsTheRecordAfterThePreparedRequestIsGone) {
    auto* scripted = new ScriptedRestClient();
    scripted->answer(200, R"({"text": "kept", "count": 7})");

    const auto& reply = preparedOver(scripted).response();

    // Built with AddressSanitizer, a reference into the destroyed temporary
    // would be reported here.
    EXPECT_EQ(reply.text, QStringLiteral("kept"));
    EXPECT_EQ(reply.count, 7);
    EXPECT_EQ(ScriptedRestClient::liveInstances, 0);
}

TEST(TypedPreparedRequest, OneLineCallThroughAServiceOperation) {
    test::ConfigScope config;
    ScriptedRestClient substitute;
    const auto api = test::apiOver<sales::Api>(substitute);
    substitute.answer(200, R"({"barcode": "4601234000017", "price": 1200})");

    const auto& item = api->itemInfo(sales::ItemInfoRequest()).response();

    EXPECT_EQ(item.barcode, QStringLiteral("4601234000017"));
    EXPECT_EQ(item.price, 1200.0);
}

TEST(TypedPreparedRequest, TemporarysResponseStillPerformsOnlyOnce) {
    auto* scripted = new ScriptedRestClient();
    PreparedRequest<Reply> request = preparedOver(scripted);
    scripted->answer(200, R"({"text": "first"})");
    EXPECT_EQ(request.response().text, QStringLiteral("first"));
    scripted->answer(200, R"({"text": "second"})");

    EXPECT_EQ(std::move(request).response().text, QStringLiteral("first"));
    EXPECT_EQ(scripted->sent.size(), 1u);
}

} // namespace
} // namespace vesk
