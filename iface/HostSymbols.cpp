// Storage that the host's libraries expect the library to define, and the
// strategies of the host's own gadgets, built when the library is loaded.

#include <morva/MockFactory.h>
#include <morva/RestClient.h>
#include <morva/Serder.h>
#include <morva/Tr.h>

namespace tr {
const QString undefined = QStringLiteral("undefined");
}

template <>
RestClient* MockFactory<RestClient>::mocked = nullptr;

template struct serder::default_serder_type<http::Part>;
template struct serder::default_serder_type<tr::Tr>;
