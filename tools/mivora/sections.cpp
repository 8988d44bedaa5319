#include "sections.hpp"

#include <cmath>

namespace mivora_tool {

Sections readSections(const Mivora::IirProcess& filter) {
    double coef[Mivora::IirProcess::maxCoefCount];
    filter.getCoef(coef);
    Sections s;
    s.order = filter.getOrder();
    // getCoef lays out the running second-order sections first, then the
    // first-order section; at order 1 there is no second-order section.
    const int biquads = filter.getEvenOrder() >= 2 ? filter.getEvenOrder() / 2 : 0;
    const double* p = coef;
    for (int k = 0; k < biquads; ++k, p += 5) s.biquads.push_back({p[0], p[1], p[2], p[3], p[4]});
    if (filter.getOddOrder() != 0) s.firstOrder = std::array<double, 3>{p[0], p[1], p[2]};
    return s;
}

bool Sections::allFinite() const {
    for (const auto& b : biquads)
        for (double c : b)
            if (!std::isfinite(c)) return false;
    if (firstOrder)
        for (double c : *firstOrder)
            if (!std::isfinite(c)) return false;
    return true;
}

}  // namespace mivora_tool
