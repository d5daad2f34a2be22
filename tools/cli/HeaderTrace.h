#pragma once

#include <morva/Http.h>
#include <morva/RestClient.h>

#include <QStringList>

namespace vesk::cli {

// The lines that --verbose shows for one exchange, as curl does: "> " for the
// request (its line, the host, the headers the transport sends with a body,
// and those the library gave), "< " for the reply's status and headers. Values
// of headers that carry credentials (Authorization, Cookie, Set-Cookie, API
// keys, tokens) are "***"; the bodies are the transport log's to show.
QStringList requestHeaderLines(const http::Request& request, const RestClient::Settings& settings);
QStringList replyHeaderLines(const http::Response& response);

// A header's value as the trace shows it: "***" for a credential.
QByteArray shownHeaderValue(const QByteArray& name, const QByteArray& value);

} // namespace vesk::cli
