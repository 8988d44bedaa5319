// What a multi-section design computes before it touches the object: the
// order it builds (clamped like every order) and the coefficients of exactly
// the sections that order runs. IirProcess::applyDesign (src/core) then
// performs the order reset and writes them, so no design indexes the
// object's storage.
#ifndef MIVORA_CASCADE_HPP
#define MIVORA_CASCADE_HPP

#include <mivora/IirProcess.h>

#include <algorithm>

namespace Mivora::design {

struct Cascade {
    static constexpr int maxSections = IirProcess::maxOrder / 2;

    // Clamps into [-maxOrder, maxOrder] and splits the order as the object
    // does: n/2 second-order sections for n >= 2 (none for n < 2), the
    // first-order section for any odd n. sections never exceeds maxSections.
    explicit Cascade(int requestedOrder) noexcept
        : order(std::clamp(requestedOrder, -IirProcess::maxOrder, IirProcess::maxOrder)),
          sections(order >= 2 ? order / 2 : 0),
          firstOrder(order % 2 != 0) {}

    int order;
    int sections;     // second-order sections 0..sections-1, each b0 b1 b2 a1 a2
    bool firstOrder;  // first-order section b0 b1 a1 present
    double section[maxSections][5] = {};
    double first[3] = {};
};

}  // namespace Mivora::design

#endif
