// A low-pass prototype mapped to the band: the second-order sections of a
// band-pass or band-eliminate filter, ready to be written in order.
#ifndef MIVORA_BAND_SECTIONS_HPP
#define MIVORA_BAND_SECTIONS_HPP

#include <mivora/IirProcess.h>

#include "low_pass_prototype.hpp"

namespace Mivora::design {

// Pre-warped band edges and the two numbers the band map is made of.
struct BandEdges {
    double wLow;
    double wHigh;
    double bw;  // wHigh - wLow
    double w2;  // wLow * wHigh, the squared pre-warped centre
};

BandEdges bandEdges(double freqLow, double freqHigh, double fs) noexcept;

enum class BandKind { Pass, Eliminate };

struct BandSections {
    int count = 0;  // the prototype order: one section per prototype pole
    double coef[IirProcess::maxProtoOrder][5] = {};
};

// Factor k gives sections 2k (upper pole pair) and 2k + 1 (lower pole pair);
// an odd order's real pole gives the last section.
BandSections bandSections(const LowPassPrototype& prototype, BandKind kind, const BandEdges& edges) noexcept;

}  // namespace Mivora::design

#endif
