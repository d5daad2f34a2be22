#pragma once

// The whole public API of the library: exceptions, prepared requests, the
// record machinery, every record and the three service clients, with the
// host headers that they use.

#include "CallOutcome.h"
#include "Exception.h"
#include "NetworkException.h"
#include "PreparedRequest.h"
#include "PreparedRequestBase.h"
#include "ServiceClient.h"
#include "records/Members.h"
#include "records/Record.h"
#include "records/StringListSerder.h"
#include <vesk/version.h>

#include "disc/disc.h"
#include "loyalty/loyalty.h"
#include "sales/sales.h"

#include <morva/BasicException.h>
#include <morva/Config.h>
#include <morva/Http.h>
#include <morva/Log4Qt.h>
#include <morva/MockFactory.h>
#include <morva/RestClient.h>
#include <morva/Serder.h>
#include <morva/Singleton.h>
#include <morva/Tr.h>
