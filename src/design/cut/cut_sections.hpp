// Pieces the high-pass / low-pass designs share: which way a design cuts, the
// first-order section of odd orders, and the numerator scaling that gives a
// low-pass section unity gain at DC.
#ifndef MIVORA_CUT_SECTIONS_HPP
#define MIVORA_CUT_SECTIONS_HPP

#include <mivora/IirProcess.h>

#include "../section_math.hpp"

namespace Mivora::design::cut {

enum class Pass { High, Low };

// Section of s^2/(s^2 + lin*s + cst) (high-pass) or cst/(s^2 + lin*s + cst)
// (low-pass): unity gain at the pass-band end either way.
inline void unityCutSection(Pass pass, double lin, double cst, double* c) noexcept {
    if (pass == Pass::High) {
        IirProcess::HpfCoefToZet(lin, cst, c);
    } else {
        IirProcess::LpfCoefToZet(lin, cst, c);
        scaleNumerator(c, cst);
    }
}

// First-order section of s/(s + w) (high-pass) or w/(s + w) (low-pass), with
// w the pre-warped real pole, as b0 b1 a1.
inline void firstOrderCutSection(Pass pass, double w, double* c) noexcept {
    const double den = w + 1.0;
    const double b = pass == Pass::High ? 1.0 / den : w / den;
    c[0] = b;
    c[1] = pass == Pass::High ? -b : b;
    c[2] = (1.0 - w) / den;
}

}  // namespace Mivora::design::cut

#endif
