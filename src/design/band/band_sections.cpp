#include "band_sections.hpp"

#include "../section_math.hpp"

namespace Mivora::design::band {

namespace {

struct BandFactors {
    Quadratic upper;
    Quadratic lower;
};

BandFactors bandFactors(Quadratic poles, const BandEdges& e) noexcept {
    BandFactors f{};
    IirProcess::BpfCoefTrans(poles.lin, poles.cst, e.wLow, e.wHigh, &f.upper.lin, &f.upper.cst, &f.lower.lin,
                             &f.lower.cst);
    return f;
}

// One prototype pole pair to its two band sections. The band-eliminate filter
// inverts the factor first (s -> 1/s) and then applies the band-pass map, so
// its poles differ from the band-pass ones unless cst is 1.
void factorSections(const PrototypeFactor& f, BandKind kind, const BandEdges& e, double bwSquared, double* upper,
                    double* lower) noexcept {
    const bool pass = kind == BandKind::Pass;
    const BandFactors d = bandFactors(pass ? f.poles : inverted(f.poles), e);
    if (pass && !f.hasZeros) {
        // gain/(poles) maps to gain*(BW*s)^2 over both band denominators; the
        // whole constant goes on the upper section.
        IirProcess::BpfCoefToZet(d.upper.lin, d.upper.cst, upper);
        IirProcess::BpfCoefToZet(d.lower.lin, d.lower.cst, lower);
        scaleNumerator(upper, bwSquared * f.gain);
        return;
    }
    // Numerators s^2 + zero: an all-pole factor inverted has s^2 on top, which
    // maps to (s^2 + W2)^2, a double null at the centre; a zero pair maps to
    // the two zero pairs of its band image.
    double zeroHigh = e.w2;
    double zeroLow = e.w2;
    if (f.hasZeros) IirProcess::BuboCoefTrans(e.wLow, e.wHigh, pass ? f.zero : 1.0 / f.zero, &zeroHigh, &zeroLow);
    IirProcess::BefCoefToZet(d.upper.lin, d.upper.cst, zeroHigh, upper);
    IirProcess::BefCoefToZet(d.lower.lin, d.lower.cst, zeroLow, lower);
    // Inverted, the factor has gain 1 at infinity with no constant left over.
    if (pass) scaleNumerator(upper, f.gain);
}

// realPole/(s + realPole): band-pass c*s/(s^2 + c*s + W2) with c = BW*realPole;
// band-eliminate (s^2 + W2)/(s^2 + c*s + W2) with c = BW/realPole.
void realPoleSection(double realPole, BandKind kind, const BandEdges& e, double* c) noexcept {
    if (kind == BandKind::Pass) {
        const double lin = e.bw * realPole;
        IirProcess::BpfCoefToZet(lin, e.w2, c);
        scaleNumerator(c, lin);
    } else {
        IirProcess::BefCoefToZet(e.bw / realPole, e.w2, e.w2, c);
    }
}

}  // namespace

BandEdges bandEdges(double freqLow, double freqHigh, double fs) noexcept {
    const double wLow = prewarp(freqLow, fs);
    const double wHigh = prewarp(freqHigh, fs);
    return {wLow, wHigh, wHigh - wLow, wLow * wHigh};
}

Cascade bandSections(const LowPassPrototype& prototype, BandKind kind, const BandEdges& edges) noexcept {
    // One section per prototype pole: order 2 * protoOrder in all.
    Cascade s(2 * prototype.order);
    const double bwSquared = edges.bw * edges.bw;
    for (int k = 0; k < prototype.order / 2; ++k)
        factorSections(prototype.factors[k], kind, edges, bwSquared, s.section[2 * k], s.section[2 * k + 1]);
    if (prototype.order % 2 != 0) realPoleSection(prototype.realPole, kind, edges, s.section[prototype.order - 1]);
    if (prototype.hasGainStep && prototype.order % 2 == 0 && prototype.order >= 2)
        scaleNumerator(s.section[0], prototype.stepGain);
    return s;
}

}  // namespace Mivora::design::band
