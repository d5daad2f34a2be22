#include "ServiceClient.h"

#include <morva/Config.h>
#include <morva/Log4Qt.h>

namespace vesk {
namespace {

QSharedPointer<RestClient> takeRestClient() {
    if (RestClient* substitute = MockFactory<RestClient>::mocked)
        return QSharedPointer<RestClient>(substitute, [](RestClient*) {});
    return QSharedPointer<RestClient>(new RestClient());
}

} // namespace

ServiceClient::ServiceClient(const ServiceDescription& service)
    : client_(takeRestClient()) {
    client_->setLogger(
        Log4Qt::LogManager::logger(QString::fromLatin1(service.loggerName), QString()));

    QString url = Singleton<Config>::getInstance()->value(QString::fromLatin1(service.configKey),
                                                          QString::fromLatin1(service.defaultUrl));
    if (!url.endsWith(QLatin1Char('/')))
        url += QLatin1Char('/');
    baseUrl_ = QUrl(url, QUrl::TolerantMode);
}

ServiceClient::~ServiceClient() = default;

QUrl ServiceClient::endpointUrl(const char* endpoint) const {
    return baseUrl_.resolved(QUrl(QString::fromLatin1(endpoint), QUrl::TolerantMode));
}

} // namespace vesk
