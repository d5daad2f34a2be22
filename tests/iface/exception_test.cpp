#include <vesk/NetworkException.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk {
namespace {

static_assert(std::is_base_of_v<BasicException, Exception>);
static_assert(std::is_base_of_v<Exception, NetworkException>);
static_assert(std::is_base_of_v<std::runtime_error, BasicException>);
static_assert(std::has_virtual_destructor_v<Exception>);
static_assert(std::is_copy_constructible_v<Exception> &&
              std::is_copy_constructible_v<NetworkException>);

TEST(Exception, CarriesCodeAndMessage) {
    const Exception e(17, tr::Tr(QStringLiteral("Карта заблокирована")));
    EXPECT_EQ(e.code(), 17);
    EXPECT_EQ(e.message().text(), QStringLiteral("Карта заблокирована"));
    EXPECT_STREQ(e.what(), "Карта заблокирована");
}

TEST(Exception, MessageOnlyGivesCodeZero) {
    const Exception e(tr::Tr(QStringLiteral("m")));
    EXPECT_EQ(e.code(), 0);
    EXPECT_EQ(e.message().text(), QStringLiteral("m"));
}

TEST(NetworkException, CodeIsZeroAndMessageIsKept) {
    const NetworkException e(tr::Tr(QStringLiteral("Cannot reach host")));
    EXPECT_EQ(e.code(), 0);
    EXPECT_EQ(e.message().text(), QStringLiteral("Cannot reach host"));
    EXPECT_STREQ(e.what(), "Cannot reach host");
}

TEST(NetworkException, IsCaughtByAHandlerForException) {
    try {
        throw NetworkException(tr::Tr(QStringLiteral("down")));
    } catch (const Exception& e) {
        EXPECT_EQ(e.code(), 0);
        EXPECT_NE(dynamic_cast<const NetworkException*>(&e), nullptr);
        return;
    }
    FAIL() << "not caught";
}

TEST(Exception, BothAreCaughtByAHandlerForBasicException) {
    int caught = 0;
    for (int i = 0; i < 2; ++i) {
        try {
            if (i == 0)
                throw Exception(3, tr::Tr(QStringLiteral("a")));
            throw NetworkException(tr::Tr(QStringLiteral("b")));
        } catch (const BasicException& e) {
            EXPECT_EQ(e.message().text(), i == 0 ? QStringLiteral("a") : QStringLiteral("b"));
            ++caught;
        }
    }
    EXPECT_EQ(caught, 2);
}

TEST(Exception, PlainExceptionIsNotANetworkException) {
    try {
        throw Exception(5, tr::Tr(QStringLiteral("x")));
    } catch (const NetworkException&) {
        FAIL() << "a service failure was taken for a network failure";
    } catch (const Exception& e) {
        EXPECT_EQ(e.code(), 5);
    }
}

TEST(TrUndefined, IsTheWordUndefined) {
    EXPECT_EQ(tr::undefined, QStringLiteral("undefined"));
}

} // namespace
} // namespace vesk
