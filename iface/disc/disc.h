#pragma once

// The disc service: its client and every record it exchanges.

#include "Api.h"
