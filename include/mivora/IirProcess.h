// Mivora: one IIR filter of up to fifth order that designs its own coefficients.
//
// An IirProcess is a cascade of up to two second-order sections (direct form I)
// followed by an optional first-order section. All state and arithmetic are
// double precision; blocks of float samples go through doProcess.
//
// Conventions that hold for every operation below:
//  - Frequencies are in one unit of your choosing (normally Hz); only their
//    ratio to the sampling frequency fs matters.
//  - Gains are in dB. gainDb >= 0 (and -0.0) boosts, gainDb < 0 cuts; a cut of
//    g dB is exactly the inverse response of the boost of g dB.
//  - Argument orders differ by family, and that is part of the interface:
//      peaking            (freq, fs, gainDb, q)
//      shelves (1st/2nd)  (freq, gainDb, fs [, type])
//      corner shelves     (fs, freq, gainDb, weight, levelDb)
//      cut / band         (order, freq(s), shape parameter, fs)
//      Q sections         (freq, q, fs)
//      utility, response  (freq, fs)
//  - Stored coefficients: five per second-order section, b0 b1 b2 a1 a2, and
//    three for the first-order section, b0 b1 a1. Feedback coefficients are
//    stored with the sign under which they are ADDED:
//      y = b0*x + b1*x1 + b2*x2 + a1*y1 + a2*y2
//    i.e. H(z) = (b0 + b1 z^-1 + b2 z^-2) / (1 - a1 z^-1 - a2 z^-2).
//    The usual [b0 b1 b2 1 A1 A2] row has A1 = -a1, A2 = -a2.
//  - No operation checks its arguments, throws, allocates or locks. Arguments
//    outside the meaningful range give non-finite or unstable coefficients;
//    they never make the object touch memory outside itself or outside the
//    caller's arrays as documented.
//  - Orders are clamped into [-maxOrder, maxOrder], band prototype orders into
//    [0, maxProtoOrder]; a clamped call behaves exactly as the call with the
//    clamped value.
//  - A design at the order the object already holds keeps the running state,
//    so a filter can be retuned between blocks without a click. A design at a
//    different order zeroes the second-order state and coefficients first.
//    The first-order state is never cleared by a design.
//  - Results are bit-exact given the default floating-point environment
//    (round to nearest, no flush-to-zero).
//  - One object is used by one thread at a time; separate objects are
//    independent. The class has no static or global data.
#ifndef MIVORA_IIRPROCESS_H
#define MIVORA_IIRPROCESS_H

#include <cstddef>
#include <cstdint>

#include "export.h"  // MIVORA_API

namespace Mivora {

// The caller's allocator type. IirProcess only stores a pointer to it.
class VqMemAlloc;
class IirChannels;

namespace design {
struct Cascade;
}
namespace detail {
struct IirProcessAccess;
}

class IirProcess {
public:
    // Most second-order sections plus first-order section the object holds.
    static constexpr int maxOrder = 5;
    // Highest prototype order of the band designs (band order = 2 * protoOrder).
    static constexpr int maxProtoOrder = 2;
    // Entries getCoef writes at most (two sections and the first-order one).
    static constexpr int maxCoefCount = 13;

    // ---- Object life ----------------------------------------------------

    // Order 2, all state and coefficients zero (outputs silence until designed).
    MIVORA_API IirProcess() noexcept;
    // As above, storing memAlloc (never used, never owned).
    MIVORA_API explicit IirProcess(VqMemAlloc* memAlloc) noexcept;
    // All state and coefficients zero, then setOrder(order).
    MIVORA_API explicit IirProcess(int order) noexcept;
    MIVORA_API IirProcess(VqMemAlloc* memAlloc, int order) noexcept;
    // Releases nothing.
    ~IirProcess() = default;

    // Bytes an IirProcess needs; place it in memory aligned to
    // alignof(IirProcess). Callable before any object exists.
    MIVORA_API static std::size_t CalculateWorkSize() noexcept;

    // ---- Order and state --------------------------------------------------

    // Sets the order (clamped into [-5, 5]). Order split: evenOrder is the
    // order rounded toward zero to an even number, oddOrder the rest.
    // Sections 0..evenOrder/2-1 run when evenOrder >= 2; the first-order
    // section runs when oddOrder != 0; order 0 passes samples through.
    // Clears nothing.
    MIVORA_API void setOrder(int order) noexcept;
    // Zeroes second-order state and coefficients (both sections). Keeps the
    // first-order state and coefficients and the order.
    MIVORA_API void clear() noexcept;
    // Zeroes all state (second- and first-order). Keeps every coefficient.
    MIVORA_API void clearDelay() noexcept;
    // Sets x1, x2, y1, y2 of every running second-order section, and x1, y1
    // of the first-order section (running or not), to value.
    MIVORA_API void setDelay(double value) noexcept;
    // Copies the running sections' coefficients into coefOut: section 0 at
    // [0..4], section 1 at [5..9], then the first-order b0 b1 a1. Order 0
    // writes five zeros; a negative even order writes nothing; a negative
    // odd order writes the first-order three. Needs maxCoefCount doubles.
    MIVORA_API void getCoef(double* coefOut) const noexcept;

    // Read-only inspection.
    int getOrder() const noexcept { return order; }
    int getEvenOrder() const noexcept { return evenOrder; }
    int getOddOrder() const noexcept { return oddOrder; }
    VqMemAlloc* getMemAlloc() const noexcept { return memAlloc; }
    // Copies the whole filter state, 10 doubles: section 0 (x1 x2 y1 y2),
    // section 1 (x1 x2 y1 y2), first-order (x1 y1).
    MIVORA_API void getDelay(double* stateOut) const noexcept;

    // ---- Processing -------------------------------------------------------

    // Filters count samples from in into out, in double precision; in == out
    // (in place) is allowed, other overlaps are not. count 0 touches nothing.
    // Blocks may be of any size: the state carries from call to call.
    MIVORA_API void doProcess(float* in, float* out, unsigned int count) noexcept;
    // Filters one sample and returns the output.
    MIVORA_API double cal(double x) noexcept;
    // As cal(double), the integer converted exactly.
    MIVORA_API double cal(int x) noexcept;
    // As cal(double x), but runs second-order sections 0..order/2-1 (order
    // clamped into [-5, 5]); none when the object's evenOrder is 0. The
    // first-order section runs exactly when the object's oddOrder != 0.
    MIVORA_API double cal(int order, double x) noexcept;

    // ---- Peaking EQ (order 2, section 0) ----------------------------------

    // Peaking band: centre gain 10^(gainDb/20), unity at DC and fs/2.
    // q is the pole Q when boosting, the zero Q when cutting; the other
    // quadratic has Q = q/A. NaN gainDb writes no coefficient.
    // q = 0 or fs = 0 give NaN coefficients; freq = 0 gives (1 - z^-1)^2 over
    // itself.
    MIVORA_API void setCoefPDFPQ(double freq, double fs, double gainDb, double q) noexcept;
    // As setCoefPDFPQ, but q is the zero Q when boosting, the pole Q when
    // cutting; the other quadratic has Q = A*q (narrower).
    MIVORA_API void setCoefPDFCQ(double freq, double fs, double gainDb, double q) noexcept;
    // Another name for setCoefPDFPQ.
    MIVORA_API void setCoef(double freq, double fs, double gainDb, double q) noexcept;

    // ---- First-order shelves (order 2, section 0 with b2 = a2 = 0) --------
    // Note the argument order: freq, gainDb, fs. A pole and a zero a factor
    // A = 10^(|gainDb|/20) apart on the pre-warped axis. Variant A: freq is
    // the corner on the shelf side; variant B: the corner on the flat side.
    // A cut is the exact inverse of the same boost; 0 dB passes the signal
    // unchanged. NaN gainDb or fs = 0 give NaN numerator coefficients and so
    // NaN output; freq = 0 gives a constant gain (1 for the low shelves,
    // 10^(gainDb/20) for HIGS_A) and NaN for HIGS_B.

    // Low shelf: gain 10^(gainDb/20) at DC, 1 at fs/2.
    MIVORA_API void setCoefLOWS_A(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefLOWS_B(double freq, double gainDb, double fs) noexcept;
    // Variant B.
    MIVORA_API void setCoefLOWS(double freq, double gainDb, double fs) noexcept;
    // Variant B when type == 1, variant A for any other type.
    MIVORA_API void setCoefLOWS(double freq, double gainDb, double fs, short type) noexcept;
    // High shelf: gain 1 at DC, 10^(gainDb/20) at fs/2; overloads as above.
    MIVORA_API void setCoefHIGS_A(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS_B(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS(double freq, double gainDb, double fs, short type) noexcept;

    // ---- Second-order shelves (order 2, section 0) ------------------------
    // freq, gainDb, fs as above. Two quadratics with natural frequencies a
    // factor sqrt(A) apart, one at freq: on the shelf side (A) or the flat
    // side (B). _2A/_2B have damping sqrt(2) (Butterworth-shaped); _PM_2A and
    // _PM_2B damping 2, the matching first-order shelf at gainDb/2 squared.
    // Gains at DC and fs/2, inverse cut, 0 dB, NaN gainDb and fs = 0 as for
    // the first-order shelves; freq = 0 gives a constant gain (1, or
    // 10^(gainDb/20) for high shelves) over a double pole on z = 1.
    MIVORA_API void setCoefLOWS_2A(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefLOWS_2B(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefLOWS_PM_2A(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefLOWS_PM_2B(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS_2A(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS_2B(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS_PM_2A(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS_PM_2B(double freq, double gainDb, double fs) noexcept;
    // _2B; with type: _2B when type == 1, _2A otherwise.
    MIVORA_API void setCoefLOWS_2(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefLOWS_2(double freq, double gainDb, double fs, short type) noexcept;
    MIVORA_API void setCoefHIGS_2(double freq, double gainDb, double fs) noexcept;
    MIVORA_API void setCoefHIGS_2(double freq, double gainDb, double fs, short type) noexcept;

    // ---- Shelves with corner placement (section 0 only; no order reset) ---
    // Note fs comes FIRST. freq lands where the straight-line response is
    // (1 - weight)*|gainDb| + weight*levelDb dB from 0 toward the shelf:
    // weight 0 gives the variant A shelf, weight 1 with levelDb 0 variant B;
    // other weights interpolate or extrapolate. levelDb of exactly -100 means
    // a linear level of 0: with weight > 0 the corner goes to 0 (low shelves)
    // or next to fs/2 (high shelves), a degenerate but finite section.
    // Writes section 0's five coefficients only: order, state, section 1 and
    // the first-order section are untouched, so setOrder(2) first for the
    // shelf to run alone. _C: first order (b2 = a2 = 0); _2C: damping sqrt(2).
    MIVORA_API void setCoefLowShelf_C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;
    // gainDb of exactly -100 cuts to silence: output held (weight < 1), or a
    // first-order low-pass at the placed corner (weight 1).
    MIVORA_API void setCoefHiShelf_C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;
    // The second-order forms of the two above.
    MIVORA_API void setCoefLowShelf_2C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;
    MIVORA_API void setCoefHiShelf_2C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;

    // ---- Butterworth high-pass / low-pass (order 1..5) ---------------------
    // Cut filters share these rules. Orders are clamped into [-5, 5] (order 8
    // designs exactly order 5). Odd orders add the first-order section after
    // the n/2 second-order sections. A design at the order the object holds
    // keeps all state; otherwise the second-order state and coefficients are
    // zeroed. The first-order state is never touched, and an even order leaves
    // the first-order coefficients as they were (they do not run). Order 0
    // writes nothing (the object passes samples through); a negative order
    // runs no second-order section and, when odd, writes only the first-order
    // section. Results for freq outside (0, fs/2) or fs = 0 are written as
    // computed (NaN for fs = 0).

    // -3.01 dB (1/sqrt 2) at freq; high-pass: 0 at DC, 1 at fs/2; low-pass the
    // reverse.
    MIVORA_API void setCoefHPF(int order, double freq, double fs) noexcept;
    MIVORA_API void setCoefLPF(int order, double freq, double fs) noexcept;
    // Second order: exactly setCoefHPF(2, freq, fs) / setCoefLPF(2, freq, fs).
    MIVORA_API void setCoefHPF(double freq, double fs) noexcept;
    MIVORA_API void setCoefLPF(double freq, double fs) noexcept;

    // ---- Chebyshev high-pass / low-pass (pass-band ripple) -----------------

    // freq is the pass-band edge, where the gain is -ripple dB; the pass band
    // stays within [-ripple, 0] dB (ripple in dB, > 0). At the pass-band end
    // (DC for low-pass, fs/2 for high-pass) odd orders give 0 dB, even orders
    // -ripple dB (section 0 carries that gain step). Note ripple stands before
    // fs. ripple <= 0 gives NaN second-order sections.
    MIVORA_API void setCoefHPFChev(int order, double freq, double ripple, double fs) noexcept;
    MIVORA_API void setCoefLPFChev(int order, double freq, double ripple, double fs) noexcept;

    // ---- Inverse Chebyshev high-pass / low-pass (equiripple stop band) -----

    // freq is the stop-band edge, where the gain is -As dB with
    // As = 96 - stopLevel/10 (0 -> 96 dB, 360 -> 60 dB, 560 -> 40 dB); the
    // whole stop band stays at or below -As dB, each second-order section
    // putting a transmission zero in it. Flat pass band, 0 dB at DC (low-pass)
    // or fs/2 (high-pass). Meaningful for stopLevel < 960; 960 makes the
    // sections all-pass and the low-pass first-order section NaN.
    MIVORA_API void setCoefHPFIChev(int order, double freq, double stopLevel, double fs) noexcept;
    MIVORA_API void setCoefLPFIChev(int order, double freq, double stopLevel, double fs) noexcept;

    // ---- Second-order cut with Q (order 2, section 0) ----------------------

    // Gain exactly q at freq (q = 1/sqrt 2: Butterworth, -3.01 dB; q = 2:
    // +6.02 dB peak); unity at fs/2 (high-pass) or DC (low-pass). Note the
    // order: freq, q, fs. Never touches the first-order section. q = 0 gives
    // a NaN a2; freq = 0 puts a double pole at z = 1.
    MIVORA_API void setCoefHPFQfct(double freq, double q, double fs) noexcept;
    MIVORA_API void setCoefLPFQfct(double freq, double q, double fs) noexcept;

    // ---- Second-order band-pass with Q (order 2, section 0) ----------------

    // Peak at freq; q = centre / bandwidth on the pre-warped axis: the -3.01 dB
    // points satisfy x+ - x- = t/q, x+ * x- = t^2 (x = tan(pi*f/fs), t at freq).
    // Zero gain at DC and fs/2. Note the order: freq, q, fs; q = 0 gives NaN.
    // setCoefBPFQfct: peak gain q; setCoefBPF_Q: peak gain 1 (0 dB), b0 and b2
    // being setCoefBPFQfct's divided by q.
    MIVORA_API void setCoefBPFQfct(double freq, double q, double fs) noexcept;
    MIVORA_API void setCoefBPF_Q(double freq, double q, double fs) noexcept;

    // ---- Band-pass / band-eliminate (order 2*protoOrder) -------------------
    // A low-pass prototype of protoOrder mapped to the band edges freqLow <
    // freqHigh (both below fs/2). protoOrder is clamped into [0, 2]: 3 or more
    // designs exactly protoOrder 2, and 0 or less sets order 0, which passes
    // samples through. Sections 0..protoOrder-1 are written (upper pole pair
    // first); the first-order section is neither written nor run. A redesign
    // at the same protoOrder keeps the running state, whichever of these six
    // designs it uses. freqLow > freqHigh gives unstable sections; freqLow = 0
    // gives non-finite ones at protoOrder 2.

    // Butterworth: -3.01 dB at both edges. Band-pass: 0 dB at the centre f0
    // (tan(pi*f0/fs) = sqrt(wLow*wHigh)), zero gain at DC and fs/2.
    // Band-eliminate: 0 dB at DC and fs/2, a null at f0; same poles as the
    // band-pass.
    MIVORA_API void setCoefBPF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept;
    MIVORA_API void setCoefBEF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept;
    // Chebyshev: ripple (dB, > 0) between 0 and -ripple dB in the pass band,
    // exactly -ripple dB at both edges. Band-pass: zero gain at DC and fs/2;
    // at f0 0 dB for protoOrder 1, -ripple dB for 2. Band-eliminate: null at
    // f0; at DC and fs/2 0 dB for protoOrder 1, -ripple dB for 2. ripple = 0
    // gives non-finite coefficients, a negative one NaN.
    MIVORA_API void setCoefBPFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept;
    MIVORA_API void setCoefBEFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept;
    // Inverse Chebyshev: flat pass band, equal-ripple stop band no higher than
    // -As dB, As = 96 - stopLevel/10 (0 -> 96 dB, 400 -> 56 dB); the edges are
    // the stop-band edges, exactly -As dB. Band-pass: 0 dB at f0; at DC and
    // fs/2 a null for protoOrder 1, -As dB for 2. Band-eliminate: 0 dB at DC
    // and fs/2; at f0 a null for protoOrder 1, -As dB for 2. stopLevel 960
    // leaves the poles undamped; above 960 the coefficients are NaN.
    MIVORA_API void setCoefBPFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel, double fs) noexcept;
    MIVORA_API void setCoefBEFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel, double fs) noexcept;

    // ---- DC filters and all-pass sections ----------------------------------

    // DC tracker in the first-order section alone (order 1):
    // y = alpha*x + (1 - alpha)*y1, unity at DC, stable for 0 < alpha < 2.
    // The corner form uses alpha = 1 - exp(-2*pi*freq/fs), so freq 0 holds
    // the output at its last value. The first-order state is kept.
    MIVORA_API void setDcfLPF(double freq, double fs) noexcept;
    MIVORA_API void setDcfLPF(double alpha) noexcept;
    // DC cut in the first-order section alone (order 1):
    // y = g*(x - x1) + g*y1 with g = 1 - alpha/2 (alpha as above): exact zero
    // at DC, gain 2g/(1 + g) at fs/2, stable for 0 < alpha < 4; freq 0 gives
    // g = 1. The first-order state is kept.
    MIVORA_API void setDcfHPF(double freq, double fs) noexcept;
    MIVORA_API void setDcfHPF(double alpha) noexcept;
    // All-pass sections in section 0 (order 2), 0 dB at every frequency.
    // setAPF1st: (k + z^-1)/(1 + k z^-1), phase -pi/2 at freq (freq 0: k = -1).
    // setAPF2nd: phase +-pi at freq; freq sets both the centre and the width
    // of the phase transition.
    MIVORA_API void setAPF1st(double freq, double fs) noexcept;
    MIVORA_API void setAPF2nd(double freq, double fs) noexcept;

    // ---- Response of the filter held now ------------------------------------

    // 10*log10 |H(e^jw)|^2 in dB at freq, all running sections; -100.0 for an
    // exact zero. Reads coefficients only, never the state.
    MIVORA_API double power(double freq, double fs) const noexcept;
    // Phase in radians (-pi..pi) of the second-order sections alone: the
    // first-order section is left out.
    MIVORA_API double phase(double freq, double fs) const noexcept;

    // ---- Section transforms (bilinear, pre-warped axis, no 2/T) ------------
    // Each maps one analogue section to five stored coefficients b0 b1 b2 a1
    // a2 (feedback sign as stored) through coefOut, and touches nothing else.

    // lin, cst: the analogue denominator s^2 + lin*s + cst on the pre-warped
    // axis (for a cut-off at tan(pi*f/fs) = t, a low-pass factor s^2 + a*s + b
    // moves to lin = a*t, cst = b*t*t).

    // s^2 / (s^2 + lin*s + cst): gain 1 at fs/2, 0 at DC.
    MIVORA_API static void HpfCoefToZet(double lin, double cst, double* coefOut) noexcept;
    // 1 / (s^2 + lin*s + cst): NOTE the numerator is 1, so the gain at DC is
    // 1/cst; multiply b0 b1 b2 by cst for unity (the designs do).
    MIVORA_API static void LpfCoefToZet(double lin, double cst, double* coefOut) noexcept;
    // (s^2 + zero) / (s^2 + lin*s + cst): gain 1 at fs/2, zero/cst at DC, and
    // a transmission zero where the pre-warped frequency is sqrt(zero).
    // zero = 0 gives exactly HpfCoefToZet.
    MIVORA_API static void IChevHpfCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept;
    // The same section: equal to IChevHpfCoefToZet bit for bit (the low-pass
    // designs scale b0 b1 b2 for unity at DC).
    MIVORA_API static void IChevLpfCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept;
    // Band-pass section s / (s^2 + lin*s + cst): gain 1/lin at the frequency
    // whose pre-warped value is sqrt(cst), zero gain at DC and fs/2.
    MIVORA_API static void BpfCoefToZet(double lin, double cst, double* coefOut) noexcept;
    // Band-eliminate section (s^2 + zero) / (s^2 + lin*s + cst): gain 1 at
    // fs/2, zero/cst at DC, a null where the pre-warped frequency is
    // sqrt(zero).
    MIVORA_API static void BefCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept;
    // Low-pass to band-pass map of one prototype factor s^2 + lin*s + cst with
    // complex roots (4*cst > lin^2), for pre-warped edges wLow < wHigh: the
    // two band factors s^2 + lin1*s + cst1 (upper pole pair, cst1 > wLow*wHigh)
    // and s^2 + lin2*s + cst2 (lower pair), whose product is
    // (s^2 + W2)^2 + lin*BW*s*(s^2 + W2) + cst*BW^2*s^2, BW = wHigh - wLow,
    // W2 = wLow*wHigh. Real roots give NaN.
    MIVORA_API static void BpfCoefTrans(double lin, double cst, double wLow, double wHigh,
                             double* lin1, double* cst1, double* lin2, double* cst2) noexcept;
    // Band map of a prototype zero factor s^2 + zero (zero >= 0) for the same
    // edges: (s^2 + zeroHigh)(s^2 + zeroLow) = (s^2 + W2)^2 + zero*BW^2*s^2,
    // so zeroHigh*zeroLow = W2^2 and sqrt(zeroHigh) - sqrt(zeroLow) =
    // BW*sqrt(zero).
    MIVORA_API static void BuboCoefTrans(double wLow, double wHigh, double zero,
                              double* zeroHigh, double* zeroLow) noexcept;

private:
    // Order reset performed by every design except the corner shelves: when
    // the order differs from n (clamped), set it and zero delay and coef.
    void changeOrder(int n) noexcept;
    // Design-side writers, so designs never do index arithmetic.
    void writeSection(int k, const double* c) noexcept;
    void writeSection(int k, double b0, double b1, double b2, double a1, double a2) noexcept;
    void writeFirstOrder(double b0, double b1, double a1) noexcept;
    static int clampOrder(int order) noexcept;
    // changeOrder(c.order), then the sections a multi-section design
    // computed, exactly those its order runs.
    void applyDesign(const design::Cascade& c) noexcept;
    // Runs its channels' stages in place of doProcess, over their storage.
    friend class IirChannels;

    // Tests, fuzzers and benchmarks reach the fields below through this one
    // accessor, never by offsets of their own.
    friend struct detail::IirProcessAccess;

    double delay[8];      // per section: x1 x2 y1 y2
    double coef[10];      // per section: b0 b1 b2 a1 a2
    double delay1st[2];   // x1 y1
    double coef1st[3];    // b0 b1 a1
    std::int32_t evenOrder;
    std::int32_t oddOrder;
    std::int32_t order;
    VqMemAlloc* memAlloc;
};

}  // namespace Mivora

#endif  // MIVORA_IIRPROCESS_H
