// The configuration keys that the documents list are exactly the keys that
// the library and the transport read: a key added to the code and not to
// the main page's or the README's table fails here, and so does a key that
// the tables list and nothing reads any more.

#include <vesk/vesk.h>

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <mutex>

namespace {

// Records every key asked for. The services point at port 1 of the loopback
// address, where nothing listens, so that their calls end at once.
class RecordingConfig : public Config {
public:
    QString value(const QString& key, const QString& defaultValue) const override {
        std::lock_guard<std::mutex> guard(lock_);
        read_.insert(key);
        if (key.startsWith(QLatin1String("Vesk.")) && key.endsWith(QLatin1String(":url")))
            return QStringLiteral("http://127.0.0.1:1/") + key.section(QLatin1Char(':'), 0, 0);
        return Config::value(key, defaultValue);
    }

    QStringList read() const {
        std::lock_guard<std::mutex> guard(lock_);
        QStringList keys(read_.begin(), read_.end());
        keys.sort();
        return keys;
    }

private:
    mutable std::mutex lock_;
    mutable QSet<QString> read_;
};

// The keys that the services and their transport read: when each client is
// made, and while each performs a call.
QStringList keysTheCodeReads() {
    static RecordingConfig* const config = [] {
        auto* recording = new RecordingConfig; // the process's Config, as the host's would be
        Singleton<Config>::instance = recording;
        return recording;
    }();
    auto perform = [](auto&& prepared) {
        EXPECT_THROW(prepared.response(), vesk::NetworkException) << prepared.url.toStdString();
    };
    perform(vesk::disc::Api::getInstance()->discCalc(vesk::disc::DiscCalcRequest()));
    perform(vesk::loyalty::Api::getInstance()->getCardBalance(vesk::loyalty::CardBalanceRequest()));
    perform(vesk::sales::Api::getInstance()->itemInfo(vesk::sales::ItemInfoRequest()));
    RestClient::Settings::fromConfig();
    return config->read();
}

// The first column of the document's table rows that name a key:
// "| `Network:timeoutMs` | ...".
QStringList keysTheDocumentLists(const char* path) {
    QFile file(QString::fromUtf8(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    static const QRegularExpression row(QStringLiteral("^\\| `([A-Za-z.]+:[A-Za-z]+)` \\|"),
                                        QRegularExpression::MultilineOption);
    QStringList keys;
    auto matches = row.globalMatch(QString::fromUtf8(file.readAll()));
    while (matches.hasNext())
        keys << matches.next().captured(1);
    keys.sort();
    return keys;
}

struct Document {
    const char* name;
    const char* path;
};

class DocumentedConfiguration : public testing::TestWithParam<Document> {};

TEST_P(DocumentedConfiguration, ListsExactlyTheKeysThatTheLibraryAndTheTransportRead) {
    const QStringList read = keysTheCodeReads();
    // The three base URLs and the transport's keys, at the least: the
    // recording itself works.
    ASSERT_TRUE(read.contains(QStringLiteral("Vesk.sales:url")));
    ASSERT_TRUE(read.contains(QStringLiteral("Network:timeoutMs")));
    EXPECT_EQ(keysTheDocumentLists(GetParam().path).join(QLatin1Char('\n')).toStdString(),
              read.join(QLatin1Char('\n')).toStdString())
        << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(Docs, DocumentedConfiguration,
                         testing::Values(Document{"MainPage", VESK_MAIN_PAGE},
                                         Document{"Readme", VESK_README}),
                         [](const testing::TestParamInfo<Document>& info) {
                             return std::string(info.param.name);
                         });

} // namespace
