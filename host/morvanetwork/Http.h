#pragma once

#include <morva/Tr.h>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QUrl>

/// The host's HTTP values: what RestClient sends and what it gives back.
namespace http {

/// One part of a multipart/form-data body.
struct Part {
    Q_GADGET
    Q_PROPERTY(QByteArray name MEMBER name)
    Q_PROPERTY(QString fileName MEMBER fileName)
    Q_PROPERTY(QByteArray contentType MEMBER contentType)
    Q_PROPERTY(QByteArray body MEMBER body)

public:
    QByteArray name;        ///< the form field's name
    QString fileName;       ///< the file name sent with it; empty: none
    QByteArray contentType; ///< the part's Content-Type; empty: none
    QByteArray body;        ///< the part's content

    /// Parts of equal members are equal.
    friend bool operator==(const Part& a, const Part& b) {
        return a.name == b.name && a.fileName == b.fileName && a.contentType == b.contentType &&
               a.body == b.body;
    }
};

/// What RestClient::send() sends: the method, URL and body exactly as given.
struct Request {
    QByteArray method;                    ///< "POST", "GET", ...
    QUrl url;                             ///< an absolute http or https URL
    QByteArray body;                      ///< sent as application/json when not empty
    QMap<QByteArray, QByteArray> headers; ///< extra header fields, by name
    QList<Part> parts; ///< when not empty, sent as multipart/form-data instead of body
};

/// What RestClient::response() gives back for the last send(). An HTTP
/// status alone is never a failure: a 404 or 500 reply that arrived whole
/// has failure None and its status.
struct Response {
    /// How the exchange failed, if it did.
    enum class Failure {
        None,    ///< a whole reply arrived, whatever its status
        Network, ///< no HTTP reply arrived (refused, unresolved, TLS failure,
                 ///< timeout or reset before the headers were complete)
        Content  ///< a reply began but its body did not arrive whole (reset or
                 ///< timeout mid-body, undecodable encoding, a body over the size limit)
    };

    int statusCode = 0; ///< the status of a reply that arrived whole; 0 on any failure
    QByteArray body;    ///< the reply's body, decoded; empty on a failure
    QMap<QByteArray, QByteArray> headers; ///< the reply's header fields, names in lower case
    tr::Tr error;                         ///< what went wrong, for the failures
    Failure failure = Failure::None;      ///< None, or how the exchange failed

    /// No HTTP reply arrived: failure is Network.
    bool isNetworkError() const { return failure == Failure::Network; }
    /// A reply began but did not arrive whole: failure is Content.
    bool isContentNetworkError() const { return failure == Failure::Content; }
};

} // namespace http
