// What all shelves share: the gain split into boost or cut, and the
// second-order shelves as a table of which quadratic goes where.
#ifndef MIVORA_EQ_SHELF_SHAPES_HPP
#define MIVORA_EQ_SHELF_SHAPES_HPP

#include <cmath>

#include "../section_math.hpp"
#include "bilinear_terms.hpp"

namespace Mivora::design::eq {

// A = 10^(|gainDb|/20) (never below 1) and r = sqrt(A). gainDb >= 0 boosts,
// -0.0 included; anything else cuts, NaN too, so a NaN gain still writes
// (NaN) coefficients rather than leaving stale ones.
struct ShelfGain {
    double a;
    double r;
    bool boost;
};

inline ShelfGain shelfGain(double gainDb) noexcept {
    const double a = pow10(std::fabs(gainDb) / 20.0);
    return {a, std::sqrt(a), gainDb >= 0.0};
}

// Damping of both quadratics: Butterworth-shaped, or a double real root so
// the section is two equal first-order shelves at half the gain in cascade.
inline constexpr double kShelfDamping = kSqrt2;
inline constexpr double kDoubleRootDamping = 2.0;

// Natural frequency of a shelf quadratic relative to the pre-warped corner t:
// at it, a factor sqrt(A) above it, or a factor sqrt(A) below it.
enum class Kind { AtCorner, Above, Below };

// The transform of s^2 + k*w*s + w^2 for the kind's w. With k = 2 the products
// r*k and t*k are exact doublings, the same as r + r and t + t.
inline Quadratic quadraticOfKind(Kind kind, double t, double k, const ShelfGain& g) noexcept {
    switch (kind) {
        case Kind::Above:
            return quadratic((g.r * k) * t, (g.a * t) * t);
        case Kind::Below:
            return quadratic((t * k) / g.r, (t * t) / g.a);
        case Kind::AtCorner:
            break;
    }
    return quadratic(t * k, t * t);
}

// A second-order shelf as the kinds of its boost's zeros and poles; its cut
// swaps them, which makes the cut the exact inverse of the boost. A high
// shelf scales the numerator by A (boost) or 1/A (cut) so that DC stays at
// unity and fs/2 gets the shelf gain.
struct QuadraticShelf {
    Kind boostZeros;
    Kind boostPoles;
    bool high;
};

// Variant A: freq is the natural frequency on the shelf's side; variant B:
// on the flat side.
inline constexpr QuadraticShelf kLowShelfA{Kind::Above, Kind::AtCorner, false};
inline constexpr QuadraticShelf kLowShelfB{Kind::AtCorner, Kind::Below, false};
inline constexpr QuadraticShelf kHighShelfA{Kind::Below, Kind::AtCorner, true};
inline constexpr QuadraticShelf kHighShelfB{Kind::AtCorner, Kind::Above, true};

inline SectionCoefs quadraticShelf(const QuadraticShelf& shape, double k, double t, const ShelfGain& g) noexcept {
    const Quadratic n = quadraticOfKind(g.boost ? shape.boostZeros : shape.boostPoles, t, k, g);
    const Quadratic m = quadraticOfKind(g.boost ? shape.boostPoles : shape.boostZeros, t, k, g);
    // The high shelf's gain step comes after the division by the denominator.
    const auto level = [&](double y) {
        if (!shape.high) return y;
        return g.boost ? g.a * y : y / g.a;
    };
    const double d = m.x0;
    return {level(n.x0 / d), level((n.x1 * -2.0) / d), level(n.x2 / d), (m.x1 + m.x1) / d, m.x2neg / d};
}

}  // namespace Mivora::design::eq

#endif
