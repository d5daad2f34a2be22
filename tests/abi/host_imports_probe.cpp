// Run against a host whose libMorva.so exports only the symbols that the
// library is listed as importing, with every symbol bound at load
// (LD_BIND_NOW=1): the process starts only if the list is complete, and the
// calls below reach every path that needs a host symbol (a typed reply, a
// service error, a network failure, a diagnostic on the service's logger).

#include <vesk/vesk.h>

#include <httplib.h>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>

namespace {

class MinimalHost : public testing::Test {
protected:
    static void SetUpTestSuite() {
        server_ = new httplib::Server;
        server_->Post("/sales/itemInfo", [](const httplib::Request&, httplib::Response& res) {
            res.set_content(R"({"barcode": "4601234000017", "name": "Milk", "price": 89.9})",
                            "application/json");
        });
        server_->Post("/sales/reserveCheque", [](const httplib::Request&, httplib::Response& res) {
            res.status = 500;
            res.set_content(R"({"code": 17, "userMsg": "Card blocked"})", "application/json");
        });
        server_->Post("/sales/unreserveCheque",
                      [](const httplib::Request&, httplib::Response& res) {
                          res.set_content("[]", "application/json");
                      });
        // One request per connection: nothing keeps the server waiting at the end.
        server_->set_keep_alive_max_count(1);
        const int port = server_->bind_to_any_port("127.0.0.1");
        thread_ = new std::thread([] { server_->listen_after_bind(); });
        // Bound and listening already; running once its loop has started.
        while (!server_->is_running())
            std::this_thread::yield();

        // The configuration reaches the library the host's way: an INI file
        // named by $MORVA_CONFIG, read when the first service is made.
        directory_ = new QTemporaryDir;
        const QString ini = directory_->filePath(QStringLiteral("till.ini"));
        QFile file(ini);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("[Vesk.sales]\nurl=http://127.0.0.1:%1/sales\n"
                                  "[Vesk.disc]\nurl=http://127.0.0.1:1/disc/\n")
                       .arg(port)
                       .toUtf8());
        file.close();
        setenv("MORVA_CONFIG", QFile::encodeName(ini).constData(), 1);
    }
    static void TearDownTestSuite() {
        server_->stop();
        thread_->join();
        delete thread_;
        delete server_;
        delete directory_;
    }

    static httplib::Server* server_;
    static std::thread* thread_;
    static QTemporaryDir* directory_;
};
httplib::Server* MinimalHost::server_ = nullptr;
std::thread* MinimalHost::thread_ = nullptr;
QTemporaryDir* MinimalHost::directory_ = nullptr;

// What Qt's logging writes, as "<category>: <message>" lines.
QStringList& logged() {
    static QStringList lines;
    return lines;
}
std::mutex& loggedLock() {
    static std::mutex lock;
    return lock;
}

vesk::sales::ItemInfoRequest anItem() {
    vesk::sales::ItemInfoRequest request;
    request.barcode = QStringLiteral("4601234000017");
    return request;
}

TEST_F(MinimalHost, TheHostsLibrariesAreTheMinimalOnesBoundAtLoad) {
    QFile maps(QStringLiteral("/proc/self/maps"));
    ASSERT_TRUE(maps.open(QIODevice::ReadOnly));
    const QString mapped = QString::fromUtf8(maps.readAll());
    const QString minimal = QDir(QStringLiteral(VESK_MINIMAL_HOST_DIR)).canonicalPath();
    EXPECT_TRUE(mapped.contains(minimal + QStringLiteral("/libMorva.so")))
        << "libMorva.so is not loaded from " << minimal.toStdString();
    EXPECT_STREQ(std::getenv("LD_BIND_NOW"), "1");
}

TEST_F(MinimalHost, ATypedCallIsAnswered) {
    auto prepared = vesk::sales::Api::getInstance()->itemInfo(anItem());
    const vesk::sales::ItemInfoResponse& item = prepared.response();
    EXPECT_EQ(item.name, QStringLiteral("Milk"));
    EXPECT_DOUBLE_EQ(item.price, 89.9);
}

TEST_F(MinimalHost, AServiceErrorRaisesTheServicesCodeAndMessage) {
    try {
        vesk::sales::Api::getInstance()
            ->reserveCheque(vesk::sales::ReserveChequeRequest())
            .getResponseVariant();
        FAIL() << "a 500 reply must raise vesk::Exception";
    } catch (const vesk::NetworkException& e) {
        FAIL() << "not a network failure: " << e.what();
    } catch (const vesk::Exception& e) {
        EXPECT_EQ(e.code(), 17);
        EXPECT_STREQ(e.what(), "Card blocked");
    }
}

TEST_F(MinimalHost, AnUnreachableServiceRaisesANetworkException) {
    try {
        vesk::disc::Api::getInstance()->discCalc(vesk::disc::DiscCalcRequest()).response();
        FAIL() << "nothing listens on port 1";
    } catch (const vesk::NetworkException& e) {
        EXPECT_EQ(e.code(), 0);
        EXPECT_NE(std::string(e.what()).find("127.0.0.1:1"), std::string::npos) << e.what();
    }
}

TEST_F(MinimalHost, AReplyThatIsNotAnObjectIsWarnedAboutOnTheServicesLogger) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
        const std::lock_guard<std::mutex> lock(loggedLock());
        logged() << QString::fromUtf8(context.category) + QStringLiteral(": ") + text;
    });
    vesk::sales::UnreserveChequeRequest request;
    request.chequeId = QStringLiteral("CHQ-1");
    const auto reply = vesk::sales::Api::getInstance()->unreserveCheque(request).response();
    qInstallMessageHandler(nullptr);

    EXPECT_EQ(reply.chequeId, QString());
    const std::lock_guard<std::mutex> lock(loggedLock());
    ASSERT_FALSE(logged().isEmpty());
    EXPECT_TRUE(logged().last().startsWith(QStringLiteral("vesksales: ")))
        << logged().join('\n').toStdString();
}

} // namespace
