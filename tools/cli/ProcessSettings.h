#pragma once

#include "CommandLine.h"

#include <vesk/ServiceClient.h>

#include <QString>
#include <QUrl>

#include <optional>

namespace vesk::cli {

// What the options of every command change in this process, checked whole
// before anything is changed:
// - --config FILE names the INI file that Config reads when it is made (it
//   is made once per process, so it must not exist yet, unless it read the
//   same file);
// - --base URL points every service that no --url names at its default path
//   on that scheme, host and port;
// - --url SERVICE=URL sets the service's base URL in Config before its
//   client is made (a client made already keeps its URL, so a different one
//   is an error);
// - --verbose turns on the info and debug lines of the services' loggers.
// False, with what is wrong in `error`, when an option is malformed or
// cannot take effect any more.
bool applyProcessSettings(const CommandLine& line, bool applyUrls, QString* error);

// --base's value: http(s)://HOST[:PORT] with no path, query or fragment;
// nullopt, with what is wrong in `error`, for anything else.
std::optional<QUrl> parseBaseUrl(const QString& text, QString* error);

// Where `service` is served on `base`: the path of its default URL there.
QUrl serviceUrlAt(const QUrl& base, const ServiceDescription& service);

// The base URL that the service's client has or will have: the
// configuration's, after --url and --base, or the default.
QUrl configuredUrl(const ServiceDescription& service);

} // namespace vesk::cli
