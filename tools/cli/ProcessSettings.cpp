#include "ProcessSettings.h"

#include "Operations.h"

#include <morva/Config.h>

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSettings>
#include <QUrl>

#include <algorithm>

namespace vesk::cli {
namespace {

struct UrlSetting {
    const Operation* service; // any operation of the service: it names the service's client
    QString url;
};

bool parseUrl(const QString& text, UrlSetting* setting, QString* error) {
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    const QString service = equals < 0 ? QString() : text.left(equals);
    const QStringList services = serviceNames();
    if (!services.contains(service)) {
        *error = QStringLiteral("--url \"%1\": expected SERVICE=URL, SERVICE one of %2")
                     .arg(text, services.join(QStringLiteral(", ")));
        return false;
    }
    const QString url = text.mid(equals + 1);
    const QUrl parsed(url, QUrl::StrictMode);
    const QString scheme = parsed.scheme();
    if (!parsed.isValid() || parsed.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        *error = QStringLiteral("--url \"%1\": \"%2\" is not an http or https URL with a host")
                     .arg(text, url);
        return false;
    }
    setting->service = operationsOf(service).first();
    setting->url = url;
    return true;
}

// --base URL for the services that no --url names: each service's default
// path on that scheme, host and port.
bool addBaseUrls(const QString& text, QList<UrlSetting>* urls, QString* error) {
    const std::optional<QUrl> base = parseBaseUrl(text, error);
    if (!base)
        return false;
    for (const QString& service : serviceNames()) {
        const Operation* first = operationsOf(service).first();
        const bool named = std::any_of(urls->begin(), urls->end(), [&](const UrlSetting& setting) {
            return setting.service->service == service;
        });
        if (!named)
            urls->append({first, serviceUrlAt(*base, *first->client).toString()});
    }
    return true;
}

// The base URL that a client made from `url` has: the text ending in "/".
QUrl baseUrlOf(QString url) {
    if (!url.endsWith(QLatin1Char('/')))
        url += QLatin1Char('/');
    return QUrl(url, QUrl::TolerantMode);
}

bool checkConfigFile(const QString& file, QString* error) {
    const QFileInfo info(file);
    if (!info.isFile() || !info.isReadable()) {
        *error = QStringLiteral("--config: cannot read \"%1\"").arg(file);
        return false;
    }
    QSettings settings(file, QSettings::IniFormat);
    settings.allKeys();
    if (settings.status() != QSettings::NoError) {
        *error = QStringLiteral("--config: \"%1\" is not an INI file").arg(file);
        return false;
    }
    if (const Config* made = Singleton<Config>::instance) {
        if (QFileInfo(made->fileName()) != info) {
            *error = QStringLiteral("--config: this process has read its configuration already%1")
                         .arg(made->fileName().isEmpty()
                                  ? QString()
                                  : QStringLiteral(" (from \"%1\")").arg(made->fileName()));
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<QUrl> parseBaseUrl(const QString& text, QString* error) {
    const QUrl url(text, QUrl::StrictMode);
    const QString scheme = url.scheme();
    if (!url.isValid() || url.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https")) ||
        (!url.path().isEmpty() && url.path() != QLatin1String("/")) || url.hasQuery() ||
        url.hasFragment()) {
        *error = QStringLiteral("--base \"%1\": expected http://HOST:PORT or https://HOST:PORT, "
                                "without a path")
                     .arg(text);
        return std::nullopt;
    }
    return url.adjusted(QUrl::RemovePath);
}

QUrl serviceUrlAt(const QUrl& base, const ServiceDescription& service) {
    QUrl url = base;
    url.setPath(QUrl(QString::fromLatin1(service.defaultUrl)).path());
    return url;
}

QUrl configuredUrl(const ServiceDescription& service) {
    return baseUrlOf(Singleton<Config>::getInstance()->value(
        QString::fromLatin1(service.configKey), QString::fromLatin1(service.defaultUrl)));
}

bool applyProcessSettings(const CommandLine& line, bool applyUrls, QString* error) {
    QList<UrlSetting> urls;
    for (const QString& text : line.urls) {
        UrlSetting setting;
        if (!parseUrl(text, &setting, error))
            return false;
        urls.append(setting);
    }
    if (!line.base.isEmpty() && !addBaseUrls(line.base, &urls, error))
        return false;
    if (!line.configFile.isEmpty() && !checkConfigFile(line.configFile, error))
        return false;
    if (applyUrls) {
        for (const UrlSetting& setting : urls) {
            const ServiceClient* made = setting.service->madeClient();
            if (made && made->baseUrl() != baseUrlOf(setting.url)) {
                *error =
                    QStringLiteral("--url %1=%2: the %1 client of this process has been made "
                                   "already, for %3")
                        .arg(setting.service->service, setting.url, made->baseUrl().toString());
                return false;
            }
        }
    }

    if (!line.configFile.isEmpty() && !Singleton<Config>::instance)
        qputenv("MORVA_CONFIG", QFile::encodeName(line.configFile));
    if (applyUrls)
        for (const UrlSetting& setting : urls)
            Singleton<Config>::getInstance()->setValue(
                QString::fromLatin1(setting.service->client->configKey), setting.url);
    if (line.verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("vesk*.info=true\nvesk*.debug=true"));
    return true;
}

} // namespace vesk::cli
