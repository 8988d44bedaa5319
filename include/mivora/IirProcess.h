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

namespace Mivora {

// The caller's allocator type. IirProcess only stores a pointer to it.
class VqMemAlloc;

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
    IirProcess() noexcept;
    // As above, storing memAlloc (never used, never owned).
    explicit IirProcess(VqMemAlloc* memAlloc) noexcept;
    // All state and coefficients zero, then setOrder(order).
    explicit IirProcess(int order) noexcept;
    IirProcess(VqMemAlloc* memAlloc, int order) noexcept;
    // Releases nothing.
    ~IirProcess() = default;

    // Bytes an IirProcess needs; place it in memory aligned to
    // alignof(IirProcess). Callable before any object exists.
    static std::size_t CalculateWorkSize() noexcept;

    // ---- Order and state --------------------------------------------------

    // Sets the order (clamped into [-5, 5]). Order split: evenOrder is the
    // order rounded toward zero to an even number, oddOrder the rest.
    // Sections 0..evenOrder/2-1 run when evenOrder >= 2; the first-order
    // section runs when oddOrder != 0; order 0 passes samples through.
    // Clears nothing.
    void setOrder(int order) noexcept;
    // Zeroes second-order state and coefficients (both sections). Keeps the
    // first-order state and coefficients and the order.
    void clear() noexcept;
    // Zeroes all state (second- and first-order). Keeps every coefficient.
    void clearDelay() noexcept;
    // Sets x1, x2, y1, y2 of every running second-order section, and x1, y1
    // of the first-order section (running or not), to value.
    void setDelay(double value) noexcept;
    // Copies the running sections' coefficients into coefOut: section 0 at
    // [0..4], section 1 at [5..9], then the first-order b0 b1 a1. Order 0
    // writes five zeros; a negative even order writes nothing; a negative
    // odd order writes the first-order three. Needs maxCoefCount doubles.
    void getCoef(double* coefOut) const noexcept;

    // Read-only inspection.
    int getOrder() const noexcept { return order; }
    int getEvenOrder() const noexcept { return evenOrder; }
    int getOddOrder() const noexcept { return oddOrder; }
    VqMemAlloc* getMemAlloc() const noexcept { return memAlloc; }
    // Copies the whole filter state, 10 doubles: section 0 (x1 x2 y1 y2),
    // section 1 (x1 x2 y1 y2), first-order (x1 y1).
    void getDelay(double* stateOut) const noexcept;

    // ---- Processing -------------------------------------------------------

    // Filters count samples from in into out, in double precision; in == out
    // (in place) is allowed, other overlaps are not. count 0 touches nothing.
    // Blocks may be of any size: the state carries from call to call.
    void doProcess(float* in, float* out, unsigned int count) noexcept;
    // Filters one sample and returns the output.
    double cal(double x) noexcept;
    // As cal(double), the integer converted exactly.
    double cal(int x) noexcept;
    // As cal(double x), but runs second-order sections 0..order/2-1 (order
    // clamped into [-5, 5]); none when the object's evenOrder is 0. The
    // first-order section runs exactly when the object's oddOrder != 0.
    double cal(int order, double x) noexcept;

    // ---- Peaking EQ (order 2, section 0) ----------------------------------

    // Peaking band: centre gain 10^(gainDb/20), unity at DC and fs/2.
    // q is the pole Q when boosting, the zero Q when cutting; the other
    // quadratic has Q = q/A. NaN gainDb writes no coefficient.
    // q = 0 or fs = 0 give NaN coefficients; freq = 0 gives (1 - z^-1)^2 over
    // itself.
    void setCoefPDFPQ(double freq, double fs, double gainDb, double q) noexcept;
    // As setCoefPDFPQ, but q is the zero Q when boosting, the pole Q when
    // cutting; the other quadratic has Q = A*q (narrower).
    void setCoefPDFCQ(double freq, double fs, double gainDb, double q) noexcept;
    // Another name for setCoefPDFPQ.
    void setCoef(double freq, double fs, double gainDb, double q) noexcept;

    // ---- First-order shelves (order 2, section 0 with b2 = a2 = 0) --------
    // Note the argument order: freq, gainDb, fs. A pole and a zero a factor
    // A = 10^(|gainDb|/20) apart on the pre-warped axis. Variant A: freq is
    // the corner on the shelf side; variant B: the corner on the flat side.
    // A cut is the exact inverse of the same boost; 0 dB passes the signal
    // unchanged. NaN gainDb or fs = 0 give NaN numerator coefficients and so
    // NaN output; freq = 0 gives a constant gain (1 for the low shelves,
    // 10^(gainDb/20) for HIGS_A) and NaN for HIGS_B.

    // Low shelf: gain 10^(gainDb/20) at DC, 1 at fs/2.
    void setCoefLOWS_A(double freq, double gainDb, double fs) noexcept;
    void setCoefLOWS_B(double freq, double gainDb, double fs) noexcept;
    // Variant B.
    void setCoefLOWS(double freq, double gainDb, double fs) noexcept;
    // Variant B when type == 1, variant A for any other type.
    void setCoefLOWS(double freq, double gainDb, double fs, short type) noexcept;
    // High shelf: gain 1 at DC, 10^(gainDb/20) at fs/2; overloads as above.
    void setCoefHIGS_A(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS_B(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS(double freq, double gainDb, double fs, short type) noexcept;

    // ---- Second-order shelves (order 2, section 0) ------------------------
    // freq, gainDb, fs as above. Two quadratics with natural frequencies a
    // factor sqrt(A) apart, one at freq: on the shelf side (A) or the flat
    // side (B). _2A/_2B have damping sqrt(2) (Butterworth-shaped); _PM_2A and
    // _PM_2B damping 2, the matching first-order shelf at gainDb/2 squared.
    // Gains at DC and fs/2, inverse cut, 0 dB, NaN gainDb and fs = 0 as for
    // the first-order shelves; freq = 0 gives a constant gain (1, or
    // 10^(gainDb/20) for high shelves) over a double pole on z = 1.
    void setCoefLOWS_2A(double freq, double gainDb, double fs) noexcept;
    void setCoefLOWS_2B(double freq, double gainDb, double fs) noexcept;
    void setCoefLOWS_PM_2A(double freq, double gainDb, double fs) noexcept;
    void setCoefLOWS_PM_2B(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS_2A(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS_2B(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS_PM_2A(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS_PM_2B(double freq, double gainDb, double fs) noexcept;
    // _2B; with type: _2B when type == 1, _2A otherwise.
    void setCoefLOWS_2(double freq, double gainDb, double fs) noexcept;
    void setCoefLOWS_2(double freq, double gainDb, double fs, short type) noexcept;
    void setCoefHIGS_2(double freq, double gainDb, double fs) noexcept;
    void setCoefHIGS_2(double freq, double gainDb, double fs, short type) noexcept;

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
    void setCoefLowShelf_C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;
    // gainDb of exactly -100 cuts to silence: output held (weight < 1), or a
    // first-order low-pass at the placed corner (weight 1).
    void setCoefHiShelf_C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;
    void setCoefLowShelf_2C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;
    void setCoefHiShelf_2C(double fs, double freq, double gainDb, double weight, double levelDb) noexcept;

    // ---- Butterworth high-pass / low-pass (order 1..5) ---------------------

    // -3.01 dB at freq. Odd orders add the first-order section. Order
    // clamped into [-5, 5].
    void setCoefHPF(int order, double freq, double fs) noexcept;
    void setCoefLPF(int order, double freq, double fs) noexcept;
    // Second order: exactly setCoefHPF(2, freq, fs) / setCoefLPF(2, freq, fs).
    void setCoefHPF(double freq, double fs) noexcept;
    void setCoefLPF(double freq, double fs) noexcept;

    // ---- Chebyshev (pass-band ripple in dB, > 0) --------------------------

    // Gain -ripple dB at freq (the pass-band edge); pass band within
    // [-ripple, 0] dB. Note ripple stands before fs.
    void setCoefHPFChev(int order, double freq, double ripple, double fs) noexcept;
    void setCoefLPFChev(int order, double freq, double ripple, double fs) noexcept;

    // ---- Inverse Chebyshev (equiripple stop band) -------------------------

    // freq is the stop-band edge; attenuation As = 96 - stopLevel/10 dB
    // (0 -> 96 dB, 360 -> 60 dB); meaningful below 960.
    void setCoefHPFIChev(int order, double freq, double stopLevel, double fs) noexcept;
    void setCoefLPFIChev(int order, double freq, double stopLevel, double fs) noexcept;

    // ---- Second-order cut with Q (order 2, section 0) ----------------------

    // Gain q at freq. Note the order: freq, q, fs.
    void setCoefHPFQfct(double freq, double q, double fs) noexcept;
    void setCoefLPFQfct(double freq, double q, double fs) noexcept;

    // ---- Second-order band-pass with Q (order 2, section 0) ----------------

    // Peak at freq; q = centre / bandwidth on the pre-warped axis.
    // setCoefBPFQfct: peak gain q; setCoefBPF_Q: peak gain 1 (0 dB).
    void setCoefBPFQfct(double freq, double q, double fs) noexcept;
    void setCoefBPF_Q(double freq, double q, double fs) noexcept;

    // ---- Band-pass / band-eliminate (order 2*protoOrder) -------------------

    // protoOrder clamped into [0, 2]; 0 passes samples through.
    // Butterworth: -3.01 dB at both edges.
    void setCoefBPF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept;
    void setCoefBEF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept;
    // Chebyshev: -ripple dB at both edges.
    void setCoefBPFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept;
    void setCoefBEFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept;
    // Inverse Chebyshev: -As dB at both (stop-band) edges.
    void setCoefBPFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel, double fs) noexcept;
    void setCoefBEFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel, double fs) noexcept;

    // ---- DC filters and all-pass sections ----------------------------------

    // One-pole DC tracker (low-pass) / DC cut (high-pass): order 1, the
    // first-order section alone. By corner frequency or by coefficient alpha.
    void setDcfLPF(double freq, double fs) noexcept;
    void setDcfLPF(double alpha) noexcept;
    void setDcfHPF(double freq, double fs) noexcept;
    void setDcfHPF(double alpha) noexcept;
    // All-pass sections held in section 0 at order 2: flat 0 dB; phase -pi/2
    // (first order) or +-pi (second order) at freq.
    void setAPF1st(double freq, double fs) noexcept;
    void setAPF2nd(double freq, double fs) noexcept;

    // ---- Response of the filter held now ------------------------------------

    // 10*log10 |H(e^jw)|^2 in dB at freq, all running sections; -100.0 for an
    // exact zero. Reads coefficients only, never the state.
    double power(double freq, double fs) const noexcept;
    // Phase in radians (-pi..pi) of the second-order sections alone: the
    // first-order section is left out.
    double phase(double freq, double fs) const noexcept;

    // ---- Section transforms (bilinear, pre-warped axis, no 2/T) ------------
    // Each maps one analogue section to five stored coefficients b0 b1 b2 a1
    // a2 (feedback sign as stored) through coefOut, and touches nothing else.

    // s^2 / (s^2 + lin*s + cst)
    static void HpfCoefToZet(double lin, double cst, double* coefOut) noexcept;
    // cst / (s^2 + lin*s + cst)
    static void LpfCoefToZet(double lin, double cst, double* coefOut) noexcept;
    // High-pass with transmission zero: numerator s^2 + zero, unity at fs/2.
    static void IChevHpfCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept;
    // Low-pass with transmission zero: numerator s^2 + zero, unity at DC.
    static void IChevLpfCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept;
    // Band-pass section: lin*s / (s^2 + lin*s + cst).
    static void BpfCoefToZet(double lin, double cst, double* coefOut) noexcept;
    // Band-eliminate section: (s^2 + zero) / (s^2 + lin*s + cst).
    static void BefCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept;
    // Low-pass to band-pass transformation of the prototype factor
    // s^2 + lin*s + cst for band edges wLow, wHigh (pre-warped): the two
    // band factors s^2 + lin1*s + cst1 and s^2 + lin2*s + cst2.
    static void BpfCoefTrans(double lin, double cst, double wLow, double wHigh,
                             double* lin1, double* cst1, double* lin2, double* cst2) noexcept;
    // Band transformation of a prototype zero factor s^2 + zero into the two
    // band zero factors s^2 + zeroHigh and s^2 + zeroLow.
    static void BuboCoefTrans(double wLow, double wHigh, double zero,
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
