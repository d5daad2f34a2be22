#include "RestClient.h"

#include "SecretMasking.h"

#include <morva/Config.h>

#include <curl/curl.h>

#include <QStringList>

#include <chrono>
#include <mutex>

// The exchange runs on libcurl's easy interface: one easy handle per client,
// kept for the client's life, so that libcurl's connection cache keeps the
// connection to the server open between calls. Every send() starts from
// curl_easy_reset(), which forgets the previous request's options (method,
// headers, body) but keeps the open connection.
//
// Failures are told apart by whether the final header block of the reply had
// arrived whole when the exchange broke off (see Exchange::headersComplete):
// before that it is a network failure, after it a content failure.
//
// Reply headers are kept with their names in lower case; a header that comes
// more than once keeps all its values, joined by ", " in the order they came.

namespace {

// The defaults, as the header's Settings gives them.
const RestClient::Settings& defaults() {
    static const RestClient::Settings settings;
    return settings;
}

void initCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

int positiveInt(const QString& text, int fallback) {
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    return ok && value > 0 ? value : fallback;
}

qint64 positiveInt64(const QString& text, qint64 fallback) {
    bool ok = false;
    const qint64 value = text.trimmed().toLongLong(&ok);
    return ok && value > 0 ? value : fallback;
}

// Settings given by a caller, with the defaults in place of values that would
// make libcurl wait for ever or refuse every reply.
RestClient::Settings sanitized(RestClient::Settings settings) {
    if (settings.timeoutMs <= 0)
        settings.timeoutMs = defaults().timeoutMs;
    if (settings.connectTimeoutMs <= 0)
        settings.connectTimeoutMs = defaults().connectTimeoutMs;
    if (settings.maxBodyBytes <= 0)
        settings.maxBodyBytes = defaults().maxBodyBytes;
    return settings;
}

struct SlistDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using Slist = std::unique_ptr<curl_slist, SlistDeleter>;

struct MimeDeleter {
    void operator()(curl_mime* mime) const { curl_mime_free(mime); }
};
using Mime = std::unique_ptr<curl_mime, MimeDeleter>;

// Appends a line to a header list; false when libcurl is out of memory.
bool append(Slist& list, const QByteArray& line) {
    curl_slist* grown = curl_slist_append(list.get(), line.constData());
    if (!grown)
        return false;
    list.release();
    list.reset(grown);
    return true;
}

QByteArray stripLineEnd(QByteArray line) {
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return line;
}

// What libcurl's callbacks gather during one exchange.
struct Exchange {
    qint64 maxBodyBytes = 0;
    QByteArray body;
    QMap<QByteArray, QByteArray> headers;
    QByteArray lastHeaderName;
    int blockStatus = 0;          // status line of the header block being read
    bool headersComplete = false; // the final (non-1xx) header block has ended
    bool overLimit = false;       // the body outgrew maxBodyBytes

    void headerLine(const QByteArray& raw) {
        const QByteArray line = stripLineEnd(raw);
        if (line.startsWith("HTTP/")) {
            // A new header block: an interim 1xx block or the final one.
            headers.clear();
            lastHeaderName.clear();
            headersComplete = false;
            const QList<QByteArray> fields = line.simplified().split(' ');
            blockStatus = fields.size() > 1 ? fields.at(1).toInt() : 0;
            return;
        }
        if (line.isEmpty()) {
            if (blockStatus >= 200)
                headersComplete = true;
            return;
        }
        if (headersComplete)
            return; // trailers after a chunked body are not kept
        if ((line.startsWith(' ') || line.startsWith('\t')) && !lastHeaderName.isEmpty()) {
            QByteArray& value = headers[lastHeaderName];
            value += ' ' + line.trimmed();
            return;
        }
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            return;
        const QByteArray name = line.left(colon).trimmed().toLower();
        const QByteArray value = line.mid(colon + 1).trimmed();
        auto it = headers.find(name);
        if (it == headers.end())
            headers.insert(name, value);
        else
            it.value() += ", " + value;
        lastHeaderName = name;
    }

    bool bodyData(const char* data, size_t size) {
        if (qint64(size) > maxBodyBytes - body.size()) {
            overLimit = true;
            return false;
        }
        body.append(data, qsizetype(size));
        return true;
    }
};

size_t onHeader(char* data, size_t size, size_t count, void* user) {
    const size_t length = size * count;
    try {
        static_cast<Exchange*>(user)->headerLine(QByteArray(data, qsizetype(length)));
    } catch (...) {
        return 0;
    }
    return length;
}

size_t onBody(char* data, size_t size, size_t count, void* user) {
    const size_t length = size * count;
    try {
        return static_cast<Exchange*>(user)->bodyData(data, length) ? length : 0;
    } catch (...) {
        return 0;
    }
}

QString describeParts(const QList<http::Part>& parts) {
    QStringList shown;
    for (const http::Part& part : parts)
        shown << QStringLiteral("%1: %2").arg(QString::fromUtf8(part.name),
                                              morva::network::maskSecrets(part.body));
    return QStringLiteral("multipart [%1]").arg(shown.join(QStringLiteral(", ")));
}

} // namespace

struct RestClient::Private {
    Settings settings;
    const Log4Qt::Logger* logger = nullptr;
    CURL* curl = nullptr;
    char errorBuffer[CURL_ERROR_SIZE] = {};
    http::Response response;

    http::Response exchange(const http::Request& request);

    // Sets the handle's options for this request; what libcurl refused, if anything.
    CURLcode prepare(const http::Request& request, const QByteArray& method, Exchange& exchange,
                     Slist& headers, Mime& mime);

    QString curlDetail(CURLcode code) const {
        const QString summary = QString::fromUtf8(curl_easy_strerror(code));
        QString detail = QString::fromUtf8(errorBuffer).trimmed();
        // libcurl often ends its detail with the summary itself.
        if (detail.endsWith(QLatin1String(": ") + summary))
            detail.chop(summary.size() + 2);
        if (detail.isEmpty() || detail == summary)
            return summary;
        return QStringLiteral("%1 (%2)").arg(summary, detail);
    }
};

RestClient::Settings RestClient::Settings::fromConfig() {
    const Config* config = Singleton<Config>::getInstance();
    Settings settings;
    settings.timeoutMs =
        positiveInt(config->value(QStringLiteral("Network:timeoutMs")), defaults().timeoutMs);
    settings.connectTimeoutMs = positiveInt(
        config->value(QStringLiteral("Network:connectTimeoutMs")), defaults().connectTimeoutMs);
    settings.caFile = config->value(QStringLiteral("Network:caFile")).trimmed();
    settings.maxBodyBytes = positiveInt64(config->value(QStringLiteral("Network:maxBodyBytes")),
                                          defaults().maxBodyBytes);
    return settings;
}

RestClient::RestClient()
    : RestClient(Settings::fromConfig()) {}

RestClient::RestClient(const Settings& settings)
    : d(std::make_unique<Private>()) {
    initCurlOnce();
    d->settings = sanitized(settings);
    d->curl = curl_easy_init();
}

RestClient::~RestClient() {
    if (d->curl)
        curl_easy_cleanup(d->curl);
}

void RestClient::setLogger(const Log4Qt::Logger* logger) {
    d->logger = logger;
}
const Log4Qt::Logger* RestClient::logger() const {
    return d->logger;
}
const RestClient::Settings& RestClient::settings() const {
    return d->settings;
}

void RestClient::send(const http::Request& request) {
    d->response = d->exchange(request);
}

http::Response RestClient::response() {
    return d->response;
}

CURLcode RestClient::Private::prepare(const http::Request& request, const QByteArray& method,
                                      Exchange& exchange, Slist& headers, Mime& mime) {
    const QByteArray url = request.url.toEncoded();
    const QByteArray caFile = settings.caFile.toLocal8Bit();
    const bool multipart = !request.parts.isEmpty();

    // The first thing that libcurl refused; the rest is then skipped.
    CURLcode result = CURLE_OK;
    const auto check = [&result](CURLcode code) {
        if (result == CURLE_OK)
            result = code;
    };
    const auto set = [&](CURLoption option, auto value) {
        if (result == CURLE_OK)
            result = curl_easy_setopt(curl, option, value);
    };
    const auto addHeader = [&](const QByteArray& line) {
        if (result == CURLE_OK && !append(headers, line))
            result = CURLE_OUT_OF_MEMORY;
    };

    set(CURLOPT_ERRORBUFFER, errorBuffer);
    set(CURLOPT_URL, url.constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_ACCEPT_ENCODING, "");
    set(CURLOPT_TIMEOUT_MS, long(settings.timeoutMs));
    set(CURLOPT_CONNECTTIMEOUT_MS, long(settings.connectTimeoutMs));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (!caFile.isEmpty())
        set(CURLOPT_CAINFO, caFile.constData());
    set(CURLOPT_MAXFILESIZE_LARGE, curl_off_t(settings.maxBodyBytes));
    set(CURLOPT_HEADERFUNCTION, &onHeader);
    set(CURLOPT_HEADERDATA, static_cast<void*>(&exchange));
    set(CURLOPT_WRITEFUNCTION, &onBody);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&exchange));

    bool hasContentType = false;
    for (auto it = request.headers.begin(); it != request.headers.end(); ++it) {
        if (it.key().compare("content-type", Qt::CaseInsensitive) == 0)
            hasContentType = true;
        // "Name;" is libcurl's way of sending a header with an empty value.
        addHeader(it.value().isEmpty() ? it.key() + ';' : it.key() + ": " + it.value());
    }
    if (!hasContentType && !multipart) {
        // Without a body, no Content-Type: not even libcurl's form default.
        addHeader(request.body.isEmpty() ? QByteArray("Content-Type:")
                                         : QByteArray("Content-Type: application/json"));
    }
    addHeader("Expect:");
    set(CURLOPT_HTTPHEADER, headers.get());

    if (multipart) {
        mime.reset(curl_mime_init(curl));
        if (!mime)
            check(CURLE_OUT_OF_MEMORY);
        for (const http::Part& part : request.parts) {
            if (result != CURLE_OK)
                break;
            curl_mimepart* field = curl_mime_addpart(mime.get());
            if (!field) {
                check(CURLE_OUT_OF_MEMORY);
                break;
            }
            check(curl_mime_name(field, part.name.constData()));
            check(curl_mime_data(field, part.body.constData(), size_t(part.body.size())));
            if (!part.fileName.isEmpty())
                check(curl_mime_filename(field, part.fileName.toUtf8().constData()));
            if (!part.contentType.isEmpty())
                check(curl_mime_type(field, part.contentType.constData()));
        }
        set(CURLOPT_MIMEPOST, mime.get());
        if (method != "POST")
            set(CURLOPT_CUSTOMREQUEST, method.constData());
    } else if (method == "POST") {
        set(CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(request.body.size()));
        set(CURLOPT_POSTFIELDS, request.body.constData());
    } else if (method == "GET" && request.body.isEmpty()) {
        set(CURLOPT_HTTPGET, 1L);
    } else if (method == "HEAD" && request.body.isEmpty()) {
        set(CURLOPT_NOBODY, 1L);
    } else {
        set(CURLOPT_CUSTOMREQUEST, method.constData());
        if (!request.body.isEmpty()) {
            set(CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(request.body.size()));
            set(CURLOPT_POSTFIELDS, request.body.constData());
        }
    }
    return result;
}

http::Response RestClient::Private::exchange(const http::Request& request) {
    const auto started = std::chrono::steady_clock::now();
    const QByteArray method = request.method.isEmpty() ? QByteArray("GET") : request.method;
    const QString shownUrl = morva::network::maskUrl(request.url);
    const bool logInfo = logger && logger->isInfoEnabled();
    const bool logDebug = logger && logger->isDebugEnabled();

    if (logDebug) {
        logger->debug(QStringLiteral("%1 %2 request: %3")
                          .arg(QString::fromLatin1(method), shownUrl,
                               request.parts.isEmpty() ? morva::network::maskSecrets(request.body)
                                                       : describeParts(request.parts)));
    }

    Exchange exchange;
    exchange.maxBodyBytes = settings.maxBodyBytes;
    Slist headers;
    Mime mime;
    errorBuffer[0] = '\0';

    CURLcode code = CURLE_FAILED_INIT;
    if (curl) {
        curl_easy_reset(curl);
        code = prepare(request, method, exchange, headers, mime);
        if (code == CURLE_OK)
            code = curl_easy_perform(curl);
    }

    curl_off_t sent = 0;
    long status = 0;
    if (curl) {
        curl_easy_getinfo(curl, CURLINFO_SIZE_UPLOAD_T, &sent);
        curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
        // The handle must not keep pointers to this call's header list, body,
        // error buffer and exchange; the open connection stays.
        curl_easy_reset(curl);
    }
    const qint64 received = exchange.body.size();

    http::Response response;
    QString outcome;
    if (code == CURLE_OK && !exchange.headersComplete) {
        // libcurl takes a connection closed after the status line for the
        // end of a reply; without the end of its headers it is no reply.
        response.failure = http::Response::Failure::Network;
        response.error = tr::Tr(QStringLiteral("Cannot reach %1: the connection closed before "
                                               "the reply's headers were complete")
                                    .arg(shownUrl));
        outcome = QStringLiteral("network failure");
    } else if (code == CURLE_OK) {
        response.statusCode = int(status);
        response.body = std::move(exchange.body);
        response.headers = std::move(exchange.headers);
        outcome = QString::number(response.statusCode);
    } else if (code == CURLE_FILESIZE_EXCEEDED ||
               (code == CURLE_WRITE_ERROR && exchange.overLimit)) {
        response.failure = http::Response::Failure::Content;
        response.error = tr::Tr(QStringLiteral("Reply from %1 exceeds the limit of %2 bytes")
                                    .arg(shownUrl, QString::number(settings.maxBodyBytes)));
        outcome = QStringLiteral("content failure");
    } else if (exchange.headersComplete) {
        response.failure = http::Response::Failure::Content;
        response.error =
            tr::Tr(QStringLiteral("Incomplete reply from %1: %2").arg(shownUrl, curlDetail(code)));
        outcome = QStringLiteral("content failure");
    } else {
        response.failure = http::Response::Failure::Network;
        response.error = tr::Tr(
            !curl ? QStringLiteral("Cannot reach %1: the HTTP library did not start").arg(shownUrl)
                  : QStringLiteral("Cannot reach %1: %2").arg(shownUrl, curlDetail(code)));
        outcome = QStringLiteral("network failure");
    }

    if (logInfo) {
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                                 std::chrono::steady_clock::now() - started)
                                 .count();
        // One arg() call: a URL's percent escapes must not be taken for markers.
        QString line = QStringLiteral("%1 %2 -> %3 in %4 ms (sent %5 B, received %6 B)")
                           .arg(QString::fromLatin1(method), shownUrl, outcome,
                                QString::number(qint64(elapsed)), QString::number(qint64(sent)),
                                QString::number(received));
        if (response.failure != http::Response::Failure::None)
            line += QStringLiteral(": ") + response.error.text();
        logger->info(line);
    }
    if (logDebug && response.failure == http::Response::Failure::None) {
        logger->debug(QStringLiteral("%1 %2 reply: %3")
                          .arg(QString::fromLatin1(method), shownUrl,
                               morva::network::maskSecrets(response.body)));
    }
    return response;
}
