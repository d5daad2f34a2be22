#pragma once

#include "Fault.h"

#include <random>

namespace vesk::emulator {

// The ms of one call's delay: the fault's fixed ms, or a draw from its
// distribution with `generator`, rounded and capped at maxDelayMs so that a
// long tail cannot hang a run. The same generator state gives the same draw.
int drawDelayMs(const Fault& fault, std::mt19937_64& generator);

} // namespace vesk::emulator
