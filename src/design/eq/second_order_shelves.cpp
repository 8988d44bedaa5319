// Second-order shelves, held in section 0: two quadratics whose natural
// frequencies lie a factor sqrt(A) apart, one of them at freq. Which kind of
// quadratic goes where is the table in shelf_shapes.hpp; the designs differ
// only in that row and in the damping.
#include <mivora/IirProcess.h>

#include "../section_math.hpp"
#include "shelf_shapes.hpp"

namespace Mivora {

namespace {

using namespace design;
using namespace design::eq;

SectionCoefs shelf(const QuadraticShelf& shape, double k, double freq, double gainDb,
                   double fs) noexcept {
    return quadraticShelf(shape, k, prewarp(freq, fs), shelfGain(gainDb));
}

constexpr double kPlain = kShelfDamping;
constexpr double kSquared = kDoubleRootDamping;

}  // namespace

void IirProcess::setCoefLOWS_2A(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kLowShelfA, kPlain, freq, gainDb, fs).data());
}

void IirProcess::setCoefLOWS_2B(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kLowShelfB, kPlain, freq, gainDb, fs).data());
}

void IirProcess::setCoefLOWS_PM_2A(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kLowShelfA, kSquared, freq, gainDb, fs).data());
}

void IirProcess::setCoefLOWS_PM_2B(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kLowShelfB, kSquared, freq, gainDb, fs).data());
}

void IirProcess::setCoefHIGS_2A(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kHighShelfA, kPlain, freq, gainDb, fs).data());
}

void IirProcess::setCoefHIGS_2B(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kHighShelfB, kPlain, freq, gainDb, fs).data());
}

void IirProcess::setCoefHIGS_PM_2A(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kHighShelfA, kSquared, freq, gainDb, fs).data());
}

void IirProcess::setCoefHIGS_PM_2B(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, shelf(kHighShelfB, kSquared, freq, gainDb, fs).data());
}

void IirProcess::setCoefLOWS_2(double freq, double gainDb, double fs) noexcept { setCoefLOWS_2B(freq, gainDb, fs); }

void IirProcess::setCoefLOWS_2(double freq, double gainDb, double fs, short type) noexcept {
    type == 1 ? setCoefLOWS_2B(freq, gainDb, fs) : setCoefLOWS_2A(freq, gainDb, fs);
}

void IirProcess::setCoefHIGS_2(double freq, double gainDb, double fs) noexcept { setCoefHIGS_2B(freq, gainDb, fs); }

void IirProcess::setCoefHIGS_2(double freq, double gainDb, double fs, short type) noexcept {
    type == 1 ? setCoefHIGS_2B(freq, gainDb, fs) : setCoefHIGS_2A(freq, gainDb, fs);
}

}  // namespace Mivora
