#pragma once

#include <morva/Tr.h>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QUrl>

// The host's HTTP values: what RestClient sends and what it gives back.
namespace http {

// One part of a multipart/form-data body.
struct Part {
    Q_GADGET
    Q_PROPERTY(QByteArray name MEMBER name)
    Q_PROPERTY(QString fileName MEMBER fileName)
    Q_PROPERTY(QByteArray contentType MEMBER contentType)
    Q_PROPERTY(QByteArray body MEMBER body)

public:
    QByteArray name;
    QString fileName;
    QByteArray contentType;
    QByteArray body;

    friend bool operator==(const Part& a, const Part& b) {
        return a.name == b.name && a.fileName == b.fileName && a.contentType == b.contentType &&
               a.body == b.body;
    }
};

struct Request {
    QByteArray method; // "POST", "GET", ...
    QUrl url;
    QByteArray body;
    QMap<QByteArray, QByteArray> headers;
    QList<Part> parts; // when not empty, sent as multipart/form-data instead of body
};

struct Response {
    // Network: no HTTP reply arrived (refused, unresolved, TLS failure,
    // timeout or reset before the headers were complete).
    // Content: a reply began but its body did not arrive whole (reset or
    // timeout mid-body, undecodable encoding, a body over the size limit).
    enum class Failure { None, Network, Content };

    int statusCode = 0; // the status of a reply that arrived whole; 0 on any failure
    QByteArray body;
    QMap<QByteArray, QByteArray> headers; // names in lower case
    tr::Tr error;                         // what went wrong, for the failures
    Failure failure = Failure::None;

    bool isNetworkError() const { return failure == Failure::Network; }
    bool isContentNetworkError() const { return failure == Failure::Content; }
};

} // namespace http
