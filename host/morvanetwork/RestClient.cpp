#include "RestClient.h"

#include "ContentDecoding.h"

#include <masking/SecretMasking.h>
#include <morva/Config.h>
#include <transport/TransportReport.h>

#include <curl/curl.h>

#include <QFileInfo>
#include <QSet>
#include <QStringList>

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <mutex>

// The exchange runs on libcurl's easy interface: one easy handle per client,
// kept for the client's life, so that libcurl's connection cache keeps the
// connection to the server open between calls. Every send() starts from
// curl_easy_reset(), which forgets the previous request's options (method,
// headers, body) but keeps the open connection.
//
// What libcurl does not guard, this file does:
// - libcurl takes an idle connection with unread bytes on it for a live one
//   and would read those bytes as the next reply. Before each exchange the
//   kept connection is polled; anything on it (bytes, a close, an error), or
//   an idle time over maxIdleMs, and the handle is replaced, which closes it.
//   After a failed exchange the connection is never used again either.
// - libcurl silently sends a request again on a new connection when a reused
//   one dies before the reply. The pre-request callback sees every attempt
//   and refuses the second one, so nothing is sent twice.
// - Content codings are undone here, not by libcurl, which takes a cut gzip
//   stream for a whole one. Accept-Encoding offers only what is configured.
// - The final header block must frame the body unambiguously: one
//   Content-Length value, and not together with Transfer-Encoding.
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

// Reads the "Network:" keys. A value that its key cannot take is warned
// about, once per key and value in a process (every client reads them),
// naming the key, the value and what is used instead.
class SettingsReader {
public:
    SettingsReader()
        : config_(*Singleton<Config>::getInstance()) {}

    QString text(const char* key) const {
        return config_.value(QLatin1String("Network:") + QLatin1String(key)).trimmed();
    }

    // A whole number of at least `minimum`; `unit` names what it counts.
    qint64 number(const char* key, qint64 fallback, qint64 minimum, const char* unit) const {
        const QString value = text(key);
        if (value.isEmpty())
            return fallback;
        bool ok = false;
        const qint64 number = value.toLongLong(&ok);
        if (ok && number >= minimum && number <= std::numeric_limits<int>::max())
            return number;
        warn(key, value,
             QStringLiteral("a whole number of %1 of at least %2")
                 .arg(QLatin1String(unit), QString::number(minimum)),
             QString::number(fallback));
        return fallback;
    }

    static void warn(const char* key, const QString& value, const QString& expected,
                     const QString& used) {
        static std::mutex lock;
        static QSet<QString> warned;
        const QString id = QLatin1String(key) + QLatin1Char('=') + value;
        {
            std::lock_guard<std::mutex> guard(lock);
            if (warned.contains(id))
                return;
            warned.insert(id);
        }
        Log4Qt::LogManager::logger(QStringLiteral("morvanetwork"))
            ->warn(QStringLiteral("Network:%1 = \"%2\" is not %3; using %4")
                       .arg(QLatin1String(key), value, expected, used));
    }

private:
    const Config& config_;
};

bool isProxyUrl(const QString& text) {
    if (!text.contains(QLatin1String("://")))
        return !text.contains(QLatin1Char(' ')); // host[:port], reached over http
    const QUrl url(text, QUrl::StrictMode);
    static const QStringList schemes{QStringLiteral("http"),   QStringLiteral("https"),
                                     QStringLiteral("socks4"), QStringLiteral("socks4a"),
                                     QStringLiteral("socks5"), QStringLiteral("socks5h")};
    return url.isValid() && schemes.contains(url.scheme().toLower()) && !url.host().isEmpty();
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
    if (settings.maxIdleMs < 0)
        settings.maxIdleMs = defaults().maxIdleMs;
    if (morva::network::acceptEncodingFor(settings.acceptEncoding).isEmpty())
        settings.acceptEncoding = defaults().acceptEncoding;
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

// Why the final header block cannot frame a body, or an empty string.
QString framingProblem(const QMap<QByteArray, QByteArray>& headers) {
    const auto length = headers.constFind("content-length");
    if (length == headers.constEnd())
        return QString();
    if (headers.contains("transfer-encoding"))
        return QStringLiteral("it has both Content-Length and Transfer-Encoding");
    qint64 first = -1;
    for (const QByteArray& part : length.value().split(',')) {
        const QByteArray digits = part.trimmed();
        bool ok = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(),
                                                   [](char c) { return c >= '0' && c <= '9'; });
        const qint64 value = ok ? digits.toLongLong(&ok) : -1;
        if (!ok)
            return QStringLiteral("its Content-Length \"%1\" is not a number")
                .arg(QString::fromLatin1(length.value()));
        if (first >= 0 && value != first)
            return QStringLiteral("it has conflicting Content-Length values (%1)")
                .arg(QString::fromLatin1(length.value()));
        first = value;
    }
    return QString();
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
    QString malformed;            // why the final header block was refused
    int attempts = 0;             // times libcurl was about to send the request
    long osErrno = 0;             // the system's error of a failed connect

    // False refuses the reply, which ends the exchange.
    bool headerLine(const QByteArray& raw) {
        const QByteArray line = stripLineEnd(raw);
        if (line.startsWith("HTTP/")) {
            // A new header block: an interim 1xx block or the final one.
            headers.clear();
            lastHeaderName.clear();
            headersComplete = false;
            const QList<QByteArray> fields = line.simplified().split(' ');
            blockStatus = fields.size() > 1 ? fields.at(1).toInt() : 0;
            return true;
        }
        if (line.isEmpty()) {
            if (blockStatus >= 200 && !headersComplete) {
                headersComplete = true;
                malformed = framingProblem(headers);
                if (!malformed.isEmpty())
                    return false;
                reserveBody();
            }
            return true;
        }
        if (headersComplete)
            return true; // trailers after a chunked body are not kept
        if ((line.startsWith(' ') || line.startsWith('\t')) && !lastHeaderName.isEmpty()) {
            QByteArray& value = headers[lastHeaderName];
            value += ' ' + line.trimmed();
            return true;
        }
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            return true;
        const QByteArray name = line.left(colon).trimmed().toLower();
        const QByteArray value = line.mid(colon + 1).trimmed();
        auto it = headers.find(name);
        if (it == headers.end())
            headers.insert(name, value);
        else
            it.value() += ", " + value;
        lastHeaderName = name;
        return true;
    }

    // A body of announced length is held in one allocation of that size, so
    // that the peak memory of a reply is its size, not the next power of two.
    void reserveBody() {
        bool ok = false;
        const qint64 length = headers.value("content-length").toLongLong(&ok);
        if (ok && length > 0 && length <= maxBodyBytes)
            body.reserve(qsizetype(length));
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
        return static_cast<Exchange*>(user)->headerLine(QByteArray(data, qsizetype(length)))
                   ? length
                   : 0;
    } catch (...) {
        return 0;
    }
}

size_t onBody(char* data, size_t size, size_t count, void* user) {
    const size_t length = size * count;
    try {
        return static_cast<Exchange*>(user)->bodyData(data, length) ? length : 0;
    } catch (...) {
        return 0;
    }
}

// Called by libcurl right before it sends the request on a connection. A
// second call in one exchange is libcurl retrying on a new connection after
// the first one died, when the request may already have been received.
int onPrerequest(void* user, char*, char*, int, int) {
    return ++static_cast<Exchange*>(user)->attempts > 1 ? CURL_PREREQFUNC_ABORT
                                                        : CURL_PREREQFUNC_OK;
}

QString describeParts(const QList<http::Part>& parts) {
    QStringList shown;
    for (const http::Part& part : parts)
        shown << QStringLiteral("%1: %2").arg(QString::fromUtf8(part.name),
                                              vesk::masking::maskSecrets(part.body));
    return QStringLiteral("multipart [%1]").arg(shown.join(QStringLiteral(", ")));
}

} // namespace

struct RestClient::Private {
    using Clock = std::chrono::steady_clock;

    Settings settings;
    QByteArray acceptEncoding; // the header's value, from settings
    const Log4Qt::Logger* logger = nullptr;
    CURL* curl = nullptr;
    char errorBuffer[CURL_ERROR_SIZE] = {};
    http::Response response;

    // The connection that libcurl keeps after a successful exchange, and
    // when that exchange ended.
    curl_socket_t keptSocket = CURL_SOCKET_BAD;
    Clock::time_point keptSince;

    http::Response exchange(const http::Request& request);

    // Sets the handle's options for this request; what libcurl refused, if anything.
    CURLcode prepare(const http::Request& request, const QByteArray& method, Exchange& exchange,
                     Slist& headers, Mime& mime);

    // The response for what libcurl and the callbacks made of the exchange.
    http::Response outcome(CURLcode code, Exchange& exchange, long status,
                           const QString& shownUrl) const;

    // Closes the kept connection unless it is fit to carry the next request.
    void dropConnectionIfUnfit();
    // Replaces the easy handle, which closes its connection.
    void dropConnection();

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
    const SettingsReader read;
    Settings settings;
    settings.timeoutMs = int(read.number("timeoutMs", defaults().timeoutMs, 1, "milliseconds"));
    settings.connectTimeoutMs =
        int(read.number("connectTimeoutMs", defaults().connectTimeoutMs, 1, "milliseconds"));
    settings.maxBodyBytes = read.number("maxBodyBytes", defaults().maxBodyBytes, 1, "bytes");
    settings.maxIdleMs = int(read.number("maxIdleMs", defaults().maxIdleMs, 0, "milliseconds"));

    settings.caFile = read.text("caFile");
    if (!settings.caFile.isEmpty() && !QFileInfo(settings.caFile).isReadable()) {
        SettingsReader::warn("caFile", settings.caFile, QStringLiteral("a readable file"),
                             QStringLiteral("it all the same: https calls will fail to verify "
                                            "their servers"));
    }

    const QString encoding = read.text("acceptEncoding");
    settings.acceptEncoding = encoding.isEmpty() ? defaults().acceptEncoding : encoding;
    if (morva::network::acceptEncodingFor(settings.acceptEncoding).isEmpty()) {
        SettingsReader::warn("acceptEncoding", encoding,
                             QStringLiteral("a list of gzip and deflate, or none"),
                             defaults().acceptEncoding);
        settings.acceptEncoding = defaults().acceptEncoding;
    }

    settings.proxy = read.text("proxy");
    if (!settings.proxy.isEmpty() && !isProxyUrl(settings.proxy)) {
        SettingsReader::warn("proxy", settings.proxy, QStringLiteral("a proxy URL"),
                             QStringLiteral("no proxy"));
        settings.proxy.clear();
    }
    settings.noProxy = read.text("noProxy");
    return sanitized(settings);
}

RestClient::RestClient()
    : RestClient(Settings::fromConfig()) {}

RestClient::RestClient(const Settings& settings)
    : d(std::make_unique<Private>()) {
    initCurlOnce();
    d->settings = sanitized(settings);
    d->acceptEncoding = morva::network::acceptEncodingFor(d->settings.acceptEncoding);
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
    const QByteArray proxy = settings.proxy.toUtf8();
    const QByteArray noProxy = settings.noProxy.toUtf8();
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
    set(CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_MAXCONNECTS, 1L);
    // An empty proxy turns off the environment's; an empty list sends every
    // host through a configured one.
    set(CURLOPT_PROXY, proxy.constData());
    set(CURLOPT_NOPROXY, noProxy.constData());
    set(CURLOPT_PREREQFUNCTION, &onPrerequest);
    set(CURLOPT_PREREQDATA, static_cast<void*>(&exchange));
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
    bool hasAcceptEncoding = false;
    for (auto it = request.headers.begin(); it != request.headers.end(); ++it) {
        if (it.key().compare("content-type", Qt::CaseInsensitive) == 0)
            hasContentType = true;
        if (it.key().compare("accept-encoding", Qt::CaseInsensitive) == 0)
            hasAcceptEncoding = true;
        // "Name;" is libcurl's way of sending a header with an empty value.
        addHeader(it.value().isEmpty() ? it.key() + ';' : it.key() + ": " + it.value());
    }
    if (!hasContentType && !multipart) {
        // Without a body, no Content-Type: not even libcurl's form default.
        addHeader(request.body.isEmpty() ? QByteArray("Content-Type:")
                                         : QByteArray("Content-Type: application/json"));
    }
    if (!hasAcceptEncoding)
        addHeader("Accept-Encoding: " + acceptEncoding);
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

void RestClient::Private::dropConnection() {
    keptSocket = CURL_SOCKET_BAD;
    if (curl)
        curl_easy_cleanup(curl);
    curl = curl_easy_init();
}

void RestClient::Private::dropConnectionIfUnfit() {
    if (keptSocket == CURL_SOCKET_BAD)
        return;
    bool fit = Clock::now() - keptSince <= std::chrono::milliseconds(settings.maxIdleMs);
    if (fit) {
        // An idle connection has nothing to say: bytes are a reply nobody
        // asked for, a readable end is the server's close, and either way
        // the connection must not carry this call.
        pollfd idle{keptSocket, POLLIN, 0};
        fit = ::poll(&idle, 1, 0) == 0;
    }
    if (!fit)
        dropConnection();
}

namespace {

bool isTlsFailure(CURLcode code) {
    switch (code) {
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_USE_SSL_FAILED:
        return true;
    default:
        return false;
    }
}

} // namespace

http::Response RestClient::Private::outcome(CURLcode code, Exchange& exchange, long status,
                                            const QString& shownUrl) const {
    namespace report = vesk::transport;
    using Failure = http::Response::Failure;
    // Whether the request left: libcurl was about to send it at least once.
    const bool sent = exchange.attempts > 0;
    http::Response response;
    // Each kind of failure has a message of its own; every one ends by
    // saying whether the request had left.
    const auto fail = [&response, sent](Failure failure, const QByteArray& kind,
                                        const QString& message) {
        response.failure = failure;
        response.error =
            tr::Tr(message + QLatin1String(sent ? report::maybeReceived : report::nothingSent));
        response.headers.insert(report::failureHeader, kind);
        response.headers.insert(report::sentHeader, sent ? "yes" : "no");
        return response;
    };
    const auto overLimit = [&] {
        return fail(Failure::Content, report::failure::replyOverLimit,
                    QStringLiteral("Reply from %1 exceeds the limit of %2 bytes")
                        .arg(shownUrl, QString::number(settings.maxBodyBytes)));
    };
    const QString timeout = QString::number(settings.timeoutMs);

    if (!curl)
        return fail(
            Failure::Network, report::failure::noConnection,
            QStringLiteral("No connection to %1: the HTTP library did not start").arg(shownUrl));
    if (!exchange.malformed.isEmpty())
        return fail(
            Failure::Content, report::failure::replyUndecodable,
            QStringLiteral("Malformed reply from %1: %2").arg(shownUrl, exchange.malformed));
    if (code == CURLE_FILESIZE_EXCEEDED || (code == CURLE_WRITE_ERROR && exchange.overLimit))
        return overLimit();
    if (exchange.headersComplete && code != CURLE_OK) {
        // The reply began and broke off.
        if (code == CURLE_OPERATION_TIMEDOUT)
            return fail(Failure::Content, report::failure::replyCut,
                        QStringLiteral("Incomplete reply from %1: it did not arrive whole within "
                                       "%2 ms")
                            .arg(shownUrl, timeout));
        if (code == CURLE_BAD_CONTENT_ENCODING)
            return fail(
                Failure::Content, report::failure::replyUndecodable,
                QStringLiteral("Undecodable reply from %1: %2").arg(shownUrl, curlDetail(code)));
        return fail(Failure::Content, report::failure::replyCut,
                    QStringLiteral("Incomplete reply from %1: the connection broke off before "
                                   "the reply was complete (%2)")
                        .arg(shownUrl, curlDetail(code)));
    }
    if (code == CURLE_WEIRD_SERVER_REPLY && exchange.blockStatus >= 200)
        return fail(Failure::Content, report::failure::replyUndecodable,
                    QStringLiteral("Malformed reply from %1: %2").arg(shownUrl, curlDetail(code)));
    if (sent && (code != CURLE_OK || !exchange.headersComplete)) {
        // The request left and no whole reply head came back. A status line
        // means the back office had the request and began to answer.
        // Bytes that are no HTTP reply (libcurl calls them HTTP/0.9).
        if (code == CURLE_WEIRD_SERVER_REPLY || code == CURLE_UNSUPPORTED_PROTOCOL)
            return fail(
                Failure::Network, report::failure::replyUndecodable,
                QStringLiteral("Malformed reply from %1: %2").arg(shownUrl, curlDetail(code)));
        if (exchange.blockStatus > 0) {
            const QString detail = code == CURLE_OPERATION_TIMEDOUT
                                       ? QStringLiteral("its headers did not arrive whole within "
                                                        "%1 ms")
                                             .arg(timeout)
                                       : QStringLiteral("the connection broke off in its headers");
            return fail(Failure::Network, report::failure::replyCut,
                        QStringLiteral("Incomplete reply from %1: %2").arg(shownUrl, detail));
        }
        if (code == CURLE_OPERATION_TIMEDOUT)
            return fail(Failure::Network, report::failure::noReply,
                        QStringLiteral("No reply from %1 within %2 ms").arg(shownUrl, timeout));
        // libcurl ends a reply that closes after its status line without an
        // error; a retry refused by onPrerequest is the connection dying too.
        const bool closed =
            code == CURLE_OK || code == CURLE_ABORTED_BY_CALLBACK || code == CURLE_GOT_NOTHING;
        const QString detail = closed ? QStringLiteral("it closed") : curlDetail(code);
        http::Response lost =
            fail(Failure::Network, report::failure::connectionLost,
                 QStringLiteral("The connection to %1 was lost before the reply: %2")
                     .arg(shownUrl, detail));
        lost.headers.insert(report::connectionEndHeader,
                            closed ? report::connectionEnd::closed : report::connectionEnd::reset);
        return lost;
    }
    if (code != CURLE_OK) {
        // Nothing left: no connection, or no secure one.
        const QString detail = curlDetail(code);
        if (code == CURLE_COULDNT_RESOLVE_HOST || code == CURLE_COULDNT_RESOLVE_PROXY)
            return fail(Failure::Network, report::failure::unresolved,
                        QStringLiteral("Cannot resolve the host of %1: %2").arg(shownUrl, detail));
        if (code == CURLE_COULDNT_CONNECT && exchange.osErrno == ECONNREFUSED)
            return fail(Failure::Network, report::failure::refused,
                        QStringLiteral("Connection refused by %1").arg(shownUrl));
        if (isTlsFailure(code))
            return fail(Failure::Network, report::failure::tls,
                        QStringLiteral("TLS with %1 failed: %2").arg(shownUrl, detail));
        if (code == CURLE_OPERATION_TIMEDOUT)
            return fail(Failure::Network, report::failure::noConnection,
                        QStringLiteral("No connection to %1 within %2 ms")
                            .arg(shownUrl, QString::number(std::min(settings.connectTimeoutMs,
                                                                    settings.timeoutMs))));
        return fail(Failure::Network, report::failure::noConnection,
                    QStringLiteral("No connection to %1: %2").arg(shownUrl, detail));
    }

    QByteArray body = std::move(exchange.body);
    const QByteArray coding = exchange.headers.value("content-encoding");
    if (!coding.isEmpty()) {
        using Outcome = morva::network::DecodedBody::Outcome;
        morva::network::DecodedBody decoded =
            morva::network::decodeContent(coding, std::move(body), settings.maxBodyBytes);
        switch (decoded.outcome) {
        case Outcome::Decoded:
            body = std::move(decoded.body);
            break;
        case Outcome::Truncated:
            return fail(
                Failure::Content, report::failure::replyCut,
                QStringLiteral("Incomplete reply from %1: %2").arg(shownUrl, decoded.problem));
        case Outcome::Corrupt:
        case Outcome::Unsupported:
            return fail(
                Failure::Content, report::failure::replyUndecodable,
                QStringLiteral("Undecodable reply from %1: %2").arg(shownUrl, decoded.problem));
        case Outcome::OverLimit:
            return overLimit();
        }
    }
    response.statusCode = int(status);
    response.body = std::move(body);
    response.headers = std::move(exchange.headers);
    return response;
}

http::Response RestClient::Private::exchange(const http::Request& request) {
    const auto started = std::chrono::steady_clock::now();
    const QByteArray method = request.method.isEmpty() ? QByteArray("GET") : request.method;
    const QString shownUrl = vesk::masking::maskUrl(request.url);
    const bool logInfo = logger && logger->isInfoEnabled();
    const bool logDebug = logger && logger->isDebugEnabled();

    if (logDebug) {
        logger->debug(QStringLiteral("%1 %2 request: %3")
                          .arg(QString::fromLatin1(method), shownUrl,
                               request.parts.isEmpty() ? vesk::masking::maskSecrets(request.body)
                                                       : describeParts(request.parts)));
    }

    Exchange exchange;
    exchange.maxBodyBytes = settings.maxBodyBytes;
    Slist headers;
    Mime mime;
    errorBuffer[0] = '\0';

    CURLcode code = CURLE_FAILED_INIT;
    dropConnectionIfUnfit();
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
        curl_easy_getinfo(curl, CURLINFO_OS_ERRNO, &exchange.osErrno);
        if (curl_easy_getinfo(curl, CURLINFO_ACTIVESOCKET, &keptSocket) != CURLE_OK)
            keptSocket = CURL_SOCKET_BAD;
        keptSince = Clock::now();
        // The handle must not keep pointers to this call's header list, body,
        // error buffer and exchange; the open connection stays.
        curl_easy_reset(curl);
    }
    const qint64 onTheWire = exchange.body.size();

    http::Response response = outcome(code, exchange, status, shownUrl);
    // A decoded reply is logged with the size it was handed over with.
    const qint64 received =
        response.failure == http::Response::Failure::None ? response.body.size() : onTheWire;
    // Whatever is left on a connection after a failure is nobody's reply.
    if (response.failure != http::Response::Failure::None)
        dropConnection();

    QString shown;
    switch (response.failure) {
    case http::Response::Failure::None:
        shown = QString::number(response.statusCode);
        break;
    case http::Response::Failure::Network:
        shown = QStringLiteral("network failure");
        break;
    case http::Response::Failure::Content:
        shown = QStringLiteral("content failure");
        break;
    }

    if (logInfo) {
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                                 std::chrono::steady_clock::now() - started)
                                 .count();
        // One arg() call: a URL's percent escapes must not be taken for markers.
        QString line =
            QStringLiteral("%1 %2 -> %3 in %4 ms (sent %5 B, received %6 B)")
                .arg(QString::fromLatin1(method), shownUrl, shown, QString::number(qint64(elapsed)),
                     QString::number(qint64(sent)), QString::number(received));
        if (response.failure != http::Response::Failure::None)
            line += QStringLiteral(": ") + response.error.text();
        logger->info(line);
    }
    if (logDebug && response.failure == http::Response::Failure::None) {
        logger->debug(QStringLiteral("%1 %2 reply: %3")
                          .arg(QString::fromLatin1(method), shownUrl,
                               vesk::masking::maskSecrets(response.body)));
    }
    return response;
}
