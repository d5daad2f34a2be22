#include "DelayDraw.h"

#include <algorithm>
#include <cmath>

namespace vesk::emulator {

namespace {

// A number in [0, 1) from the top 53 bits of a draw. Written out rather than
// taken from <random>'s distributions, whose results differ between standard
// libraries: a seed gives the same delays wherever the emulator is built.
double unit(std::mt19937_64& generator) {
    return double(generator() >> 11) * (1.0 / double(quint64(1) << 53));
}

// A standard normal number (Box-Muller); 1 - unit() keeps the logarithm finite.
double normal(std::mt19937_64& generator) {
    const double radius = std::sqrt(-2.0 * std::log(1.0 - unit(generator)));
    constexpr double pi = 3.14159265358979323846;
    return radius * std::cos(2.0 * pi * unit(generator));
}

} // namespace

int drawDelayMs(const Fault& fault, std::mt19937_64& generator) {
    double ms = fault.ms;
    switch (fault.distribution) {
    case Fault::Distribution::Fixed:
        break;
    case Fault::Distribution::Uniform:
        ms = std::floor(fault.minMs + unit(generator) * double(fault.maxMs - fault.minMs + 1));
        break;
    case Fault::Distribution::LogNormal:
        ms = std::round(fault.medianMs * std::exp(fault.sigma * normal(generator)));
        break;
    }
    return int(std::clamp(ms, 0.0, double(maxDelayMs)));
}

} // namespace vesk::emulator
