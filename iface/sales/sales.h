#pragma once

// The sales service: its client and every record it exchanges.

#include "Api.h"
