#pragma once

// The loyalty service: its client and every record it exchanges.

#include "Api.h"
