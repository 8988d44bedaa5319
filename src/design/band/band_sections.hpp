// A low-pass prototype mapped to the band: the second-order sections of a
// band-pass or band-eliminate filter, ready to be written in order.
#ifndef MIVORA_BAND_SECTIONS_HPP
#define MIVORA_BAND_SECTIONS_HPP

#include <mivora/IirProcess.h>

#include "../cascade.hpp"
#include "low_pass_prototype.hpp"

namespace Mivora::design::band {

// Pre-warped band edges and the two numbers the band map is made of.
struct BandEdges {
    double wLow;
    double wHigh;
    double bw;  // wHigh - wLow
    double w2;  // wLow * wHigh, the squared pre-warped centre
};

BandEdges bandEdges(double freqLow, double freqHigh, double fs) noexcept;

enum class BandKind { Pass, Eliminate };

// Factor k gives sections 2k (upper pole pair) and 2k + 1 (lower pole pair);
// an odd order's real pole gives the last section.
Cascade bandSections(const LowPassPrototype& prototype, BandKind kind, const BandEdges& edges) noexcept;

}  // namespace Mivora::design::band

#endif
