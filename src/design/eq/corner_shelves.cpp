// Shelves whose flat-side corner is placed from a weight and a level, so that
// freq can sit anywhere in the transition: weight 0 puts freq at the
// shelf-side corner, weight 1 where the straight-line response is levelDb.
// The section is then the variant-B shelf at the placed corner W. These
// designs only retune section 0: no order reset, no state touched, so they
// can follow a sweep on a running filter.
#include <mivora/IirProcess.h>

#include <cmath>

#include "math/cr_math.hpp"

#include "../section_math.hpp"
#include "bilinear_terms.hpp"
#include "shelf_shapes.hpp"

namespace Mivora {

namespace {

using namespace design;
using namespace design::eq;

// Linear level of a dB value; exactly -100 dB stands for silence, 0.
double linearLevel(double db) noexcept { return db == -100.0 ? 0.0 : pow10(db / 20.0); }

// t scaled by levelFactor^weight. Going through tan(atan()) keeps an infinite
// factor (a level of -100 dB inverted) at a large but finite corner.
double placed(double t, double levelFactor, double weight) noexcept {
    return math::tan(math::atan(t * math::pow(levelFactor, weight)));
}

// Low shelf with its flat-side corner at w: A(s + 1)/(As + 1) boost,
// (s + 1/A)/(s + 1) cut.
SectionCoefs lowShelfAt(double w, const ShelfGain& g) noexcept {
    if (g.boost) return firstOrderSection(scaledFactor(g.a, w), factor(g.a, w));
    return firstOrderSection(factor(1.0, w / g.a), factor(1.0, w));
}

// High shelf with its flat-side corner at w and v = 10^(gainDb/20):
// v(s + 1)/(s + v) boost, (vs + 1)/(s + 1) cut.
SectionCoefs highShelfAt(double w, double v, bool boost) noexcept {
    if (boost) return firstOrderSection(scaledFactor(v, w), factor(1.0, v * w));
    // b1 is (w - v)/(w + 1); -(v - w)/(w + 1) would flip the sign of an exact
    // zero, hence the difference negated twice rather than reversed.
    return firstOrderSection(Factor{v + w, -(w - v)}, factor(1.0, w));
}

}  // namespace

void IirProcess::setCoefLowShelf_C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept {
    const ShelfGain g = shelfGain(gainDb);
    const double w = math::pow(g.a, 1.0 - weight) * placed(prewarp(freq, fs), linearLevel(levelDb), weight);
    writeSection(0, lowShelfAt(w, g).data());
}

void IirProcess::setCoefHiShelf_C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept {
    // The signed gain here, with -100 dB as silence: a cut to nothing.
    const double v = linearLevel(gainDb);
    const bool boost = gainDb >= 0.0;
    const double toward = math::pow(v, boost ? -(1.0 - weight) : 1.0 - weight);
    const double w = toward * placed(prewarp(freq, fs), 1.0 / linearLevel(levelDb), weight);
    writeSection(0, highShelfAt(w, v, boost).data());
}

void IirProcess::setCoefLowShelf_2C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept {
    const ShelfGain g = shelfGain(gainDb);
    const double w = math::pow(g.r, 1.0 - weight) * placed(prewarp(freq, fs), std::sqrt(linearLevel(levelDb)), weight);
    writeSection(0, quadraticShelf(kLowShelfB, kShelfDamping, w, g).data());
}

void IirProcess::setCoefHiShelf_2C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept {
    const ShelfGain g = shelfGain(gainDb);
    const double placedFlat = placed(prewarp(freq, fs), 1.0 / std::sqrt(linearLevel(levelDb)), weight);
    const double w = placedFlat / math::pow(g.r, 1.0 - weight);
    writeSection(0, quadraticShelf(kHighShelfB, kShelfDamping, w, g).data());
}

}  // namespace Mivora
