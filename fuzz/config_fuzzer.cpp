// The host's configuration file, whatever its bytes: read into Config, and
// the keys of the library and the transport taken from it.

#include <morva/Config.h>
#include <morva/RestClient.h>

#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static QTemporaryDir* const dir = [] {
        QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
        return new QTemporaryDir;
    }();
    const QByteArray path = dir->filePath(QStringLiteral("till.ini")).toLocal8Bit();
    if (FILE* file = std::fopen(path.constData(), "wb")) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    setenv("MORVA_CONFIG", path.constData(), 1);
    Config config;
    Config* previous = Singleton<Config>::instance;
    Singleton<Config>::instance = &config;
    for (const char* key : {"Vesk.disc:url", "Vesk.loyalty:url", "Vesk.sales:url",
                            "Network:timeoutMs", "Network:proxy", "top"})
        config.value(QString::fromLatin1(key), QStringLiteral("default"));
    const RestClient::Settings settings = RestClient::Settings::fromConfig();
    if (settings.timeoutMs <= 0 || settings.connectTimeoutMs <= 0 || settings.maxBodyBytes <= 0 ||
        settings.maxIdleMs < 0)
        __builtin_trap(); // a setting a client cannot work with
    Singleton<Config>::instance = previous;
    return 0;
}
