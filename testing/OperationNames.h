#pragma once

#include <QString>

namespace vesk::testing::detail {

// The service ("disc", "loyalty", "sales") whose endpoint is named
// `operation` ("itemInfo"); empty when none is. No two services share an
// endpoint's name.
QString serviceOf(const QString& operation);

} // namespace vesk::testing::detail
