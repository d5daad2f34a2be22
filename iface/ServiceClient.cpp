#include "ServiceClient.h"

#include "CallGates.h"

#include <morva/Config.h>
#include <morva/Log4Qt.h>

namespace vesk {
namespace {

QSharedPointer<RestClient> takeRestClient() {
    if (RestClient* substitute = MockFactory<RestClient>::mocked)
        return QSharedPointer<RestClient>(substitute, [](RestClient*) {});
    return QSharedPointer<RestClient>(new RestClient());
}

bool isAbsoluteHttpUrl(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https")) &&
           !url.host().isEmpty();
}

} // namespace

ServiceClient::ServiceClient(const ServiceDescription& service)
    : client_(takeRestClient()) {
    const Log4Qt::Logger* logger =
        Log4Qt::LogManager::logger(QString::fromLatin1(service.loggerName), QString());
    client_->setLogger(logger);

    const QString key = QString::fromLatin1(service.configKey);
    const QString configured =
        Singleton<Config>::getInstance()->value(key, QString::fromLatin1(service.defaultUrl));
    QString url = configured;
    if (!url.endsWith(QLatin1Char('/')))
        url += QLatin1Char('/');
    baseUrl_ = QUrl(url, QUrl::TolerantMode);
    if (!isAbsoluteHttpUrl(baseUrl_)) {
        logger->warn(QStringLiteral("%1 = \"%2\" is not an absolute http or https URL; it is used "
                                    "as given, so the calls of %3 will fail")
                         .arg(key, configured, QString::fromLatin1(service.className)));
    }
    detail::CallGates::bind(client_, this, QString::fromLatin1(service.className),
                            baseUrl_.toString(), logger);
}

ServiceClient::~ServiceClient() {
    detail::CallGates::unbind(client_, this);
}

void ServiceClient::warnLateSubstitute() const {
    detail::CallGates::warnLateSubstitute(client_, this, MockFactory<RestClient>::mocked);
}

QUrl ServiceClient::endpointUrl(const char* endpoint) const {
    return baseUrl_.resolved(QUrl(QString::fromLatin1(endpoint), QUrl::TolerantMode));
}

} // namespace vesk
