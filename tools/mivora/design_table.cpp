// The one table from friendly names to library calls. A design is one row:
// its selector values, the call it makes, its options, and the call itself.
#include "design_registry.hpp"

namespace mivora_tool {

using Mivora::IirProcess;

namespace {

int asOrder(double v) { return static_cast<int>(v); }

// Options shared by many rows. Frequencies default so that a first try needs
// few options; gains never default, since a shelf or peak without one is flat.
const Param kPeakGain{"gain", Kind::Gain, "gain at the centre frequency", {}};
const Param kLowShelfGain{"gain", Kind::Gain, "shelf gain, reached at DC", {}};
const Param kHighShelfGain{"gain", Kind::Gain, "shelf gain, reached at fs/2", {}};
const Param kShelfSideCorner{"freq", Kind::Frequency, "corner on the shelf side", 1000.0};
const Param kFlatSideCorner{"freq", Kind::Frequency, "corner on the flat side", 1000.0};
const Param kShelfSideNatural{"freq", Kind::Frequency, "natural frequency on the shelf side", 1000.0};
const Param kFlatSideNatural{"freq", Kind::Frequency, "natural frequency on the flat side", 1000.0};
const Param kPlacedFreq{"freq", Kind::Frequency, "frequency placed in the transition by --weight", 1000.0};
const Param kWeight{"weight", Kind::Weight, "0 puts --freq at the shelf-side corner, 1 where the response is --level",
                    1.0};
const Param kLevel{"level", Kind::Level, "response level that weight 1 aims at (-100 stands for silence)", 0.0};

const Param kCutOrder{"order", Kind::Order, "filter order", 2.0};
const Param kCutoff{"freq", Kind::Frequency, "cut-off frequency, -3.01 dB", 1000.0};
const Param kPassEdge{"freq", Kind::Frequency, "pass-band edge, -ripple dB", 1000.0};
const Param kStopEdge{"freq", Kind::Frequency, "stop-band edge, -As dB", 1000.0};
const Param kRipple{"ripple", Kind::Ripple, "pass-band ripple", 1.0};
const Param kStopLevel{"stop-level", Kind::StopLevel, "stop band: attenuation As = 96 - stop-level/10 dB", 0.0};
const Param kCutQ{"q", Kind::Q, "Q: the gain at --freq", 0.7071067811865476};

const Param kProtoOrder{"order", Kind::ProtoOrder, "prototype order; the filter has twice this order", 1.0};
const Param kLowEdge{"low", Kind::Frequency, "lower band edge", 500.0};
const Param kHighEdge{"high", Kind::Frequency, "upper band edge", 2000.0};
const Param kLowStopEdge{"low", Kind::Frequency, "lower stop-band edge", 500.0};
const Param kHighStopEdge{"high", Kind::Frequency, "upper stop-band edge", 2000.0};
const Param kBandCentre{"freq", Kind::Frequency, "centre frequency", 1000.0};

const Param kDcCorner{"freq", Kind::Frequency, "corner frequency", 10.0};
const Param kAllpassFreq{"freq", Kind::Frequency, "frequency of the phase mid-point", 1000.0};

const Selector kShelfOrder{"order", {"1", "2"}, "1", "shelf order"};
const Selector kShelfVariant{"variant", {"A", "B"}, "B", "--freq names the corner on the shelf (A) or flat (B) side"};
const Selector kShelfDamping{
    "damping", {"sqrt2", "2"}, "sqrt2", "second-order damping; 2 is the square of the first-order shelf at half gain"};
const Selector kShelfPlacement{"placement", {"natural", "corner"}, "natural", "corner placement by weight and level",
                               true, {"weight", "level"}, "corner"};
const Selector kDcForm{"form", {"freq", "alpha"}, "freq", "by corner frequency or by coefficient",
                       true, {"alpha"}, "alpha"};

const std::vector<Family> kFamilies = {
    {"peak", "peaking EQ band: gain at a centre frequency, unity at DC and fs/2",
     {{"variant", {"pq", "cq"}, "pq", "--q is the pole Q when boosting (pq) or the zero Q when boosting (cq)"}}},
    {"lowshelf", "low shelf: gain below the corner, unity above",
     {kShelfOrder, kShelfVariant, kShelfDamping, kShelfPlacement}},
    {"highshelf", "high shelf: unity below the corner, gain above",
     {kShelfOrder, kShelfVariant, kShelfDamping, kShelfPlacement}},
    {"lowpass", "low-pass: Butterworth, Chebyshev, inverse Chebyshev, or second order with Q",
     {{"type", {"butter", "cheby", "icheby", "q"}, "butter", "response family"}}},
    {"highpass", "high-pass: Butterworth, Chebyshev, inverse Chebyshev, or second order with Q",
     {{"type", {"butter", "cheby", "icheby", "q"}, "butter", "response family"}}},
    {"bandpass", "band-pass: Butterworth, Chebyshev, inverse Chebyshev, or second order with Q",
     {{"type", {"butter", "cheby", "icheby", "q", "q0"}, "butter",
       "response family; q peaks at gain Q, q0 at 0 dB"}}},
    {"bandstop", "band-stop: Butterworth, Chebyshev or inverse Chebyshev",
     {{"type", {"butter", "cheby", "icheby"}, "butter", "response family"}}},
    {"dc-lowpass", "one-pole DC tracker (first-order section alone)", {kDcForm}},
    {"dc-highpass", "DC cut: zero at DC, one pole (first-order section alone)", {kDcForm}},
    {"allpass", "all-pass section: flat magnitude, phase turning around --freq",
     {{"order", {"1", "2"}, "2", "section order"}}},
};

const std::vector<DesignRow> kRows = {
    // Peaking EQ.
    {"peak", {{"variant", "pq"}}, "setCoefPDFPQ(freq, fs, gain, q)",
     {kBandCentre, kPeakGain, {"q", Kind::Q, "Q of the poles when boosting, of the zeros when cutting", 1.0}},
     [](IirProcess& f, const double* v, double fs) { f.setCoefPDFPQ(v[0], fs, v[1], v[2]); }},
    {"peak", {{"variant", "cq"}}, "setCoefPDFCQ(freq, fs, gain, q)",
     {kBandCentre, kPeakGain, {"q", Kind::Q, "Q of the zeros when boosting, of the poles when cutting", 1.0}},
     [](IirProcess& f, const double* v, double fs) { f.setCoefPDFCQ(v[0], fs, v[1], v[2]); }},
    // First- and second-order shelves, and the corner-placed ones.
    {"lowshelf", {{"order", "1"}, {"variant", "A"}, {"placement", "natural"}}, "setCoefLOWS_A(freq, gain, fs)",
     {kShelfSideCorner, kLowShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLOWS_A(v[0], v[1], fs); }},
    {"lowshelf", {{"order", "1"}, {"variant", "B"}, {"placement", "natural"}}, "setCoefLOWS_B(freq, gain, fs)",
     {kFlatSideCorner, kLowShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLOWS_B(v[0], v[1], fs); }},
    {"lowshelf", {{"order", "2"}, {"variant", "A"}, {"damping", "sqrt2"}, {"placement", "natural"}},
     "setCoefLOWS_2A(freq, gain, fs)", {kShelfSideNatural, kLowShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLOWS_2A(v[0], v[1], fs); }},
    {"lowshelf", {{"order", "2"}, {"variant", "B"}, {"damping", "sqrt2"}, {"placement", "natural"}},
     "setCoefLOWS_2B(freq, gain, fs)", {kFlatSideNatural, kLowShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLOWS_2B(v[0], v[1], fs); }},
    {"lowshelf", {{"order", "2"}, {"variant", "A"}, {"damping", "2"}, {"placement", "natural"}},
     "setCoefLOWS_PM_2A(freq, gain, fs)", {kShelfSideNatural, kLowShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLOWS_PM_2A(v[0], v[1], fs); }},
    {"lowshelf", {{"order", "2"}, {"variant", "B"}, {"damping", "2"}, {"placement", "natural"}},
     "setCoefLOWS_PM_2B(freq, gain, fs)", {kFlatSideNatural, kLowShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLOWS_PM_2B(v[0], v[1], fs); }},
    {"lowshelf", {{"order", "1"}, {"placement", "corner"}}, "setCoefLowShelf_C(fs, freq, gain, weight, level)",
     {kPlacedFreq, kLowShelfGain, kWeight, kLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLowShelf_C(fs, v[0], v[1], v[2], v[3]); }},
    {"lowshelf", {{"order", "2"}, {"placement", "corner"}}, "setCoefLowShelf_2C(fs, freq, gain, weight, level)",
     {kPlacedFreq, kLowShelfGain, kWeight, kLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLowShelf_2C(fs, v[0], v[1], v[2], v[3]); }},
    {"highshelf", {{"order", "1"}, {"variant", "A"}, {"placement", "natural"}}, "setCoefHIGS_A(freq, gain, fs)",
     {kShelfSideCorner, kHighShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHIGS_A(v[0], v[1], fs); }},
    {"highshelf", {{"order", "1"}, {"variant", "B"}, {"placement", "natural"}}, "setCoefHIGS_B(freq, gain, fs)",
     {kFlatSideCorner, kHighShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHIGS_B(v[0], v[1], fs); }},
    {"highshelf", {{"order", "2"}, {"variant", "A"}, {"damping", "sqrt2"}, {"placement", "natural"}},
     "setCoefHIGS_2A(freq, gain, fs)", {kShelfSideNatural, kHighShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHIGS_2A(v[0], v[1], fs); }},
    {"highshelf", {{"order", "2"}, {"variant", "B"}, {"damping", "sqrt2"}, {"placement", "natural"}},
     "setCoefHIGS_2B(freq, gain, fs)", {kFlatSideNatural, kHighShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHIGS_2B(v[0], v[1], fs); }},
    {"highshelf", {{"order", "2"}, {"variant", "A"}, {"damping", "2"}, {"placement", "natural"}},
     "setCoefHIGS_PM_2A(freq, gain, fs)", {kShelfSideNatural, kHighShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHIGS_PM_2A(v[0], v[1], fs); }},
    {"highshelf", {{"order", "2"}, {"variant", "B"}, {"damping", "2"}, {"placement", "natural"}},
     "setCoefHIGS_PM_2B(freq, gain, fs)", {kFlatSideNatural, kHighShelfGain},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHIGS_PM_2B(v[0], v[1], fs); }},
    {"highshelf", {{"order", "1"}, {"placement", "corner"}}, "setCoefHiShelf_C(fs, freq, gain, weight, level)",
     {kPlacedFreq, kHighShelfGain, kWeight, kLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHiShelf_C(fs, v[0], v[1], v[2], v[3]); }},
    {"highshelf", {{"order", "2"}, {"placement", "corner"}}, "setCoefHiShelf_2C(fs, freq, gain, weight, level)",
     {kPlacedFreq, kHighShelfGain, kWeight, kLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHiShelf_2C(fs, v[0], v[1], v[2], v[3]); }},
    // Cut filters of any order the object holds, and the second-order Q sections.
    {"lowpass", {{"type", "butter"}}, "setCoefLPF(order, freq, fs)", {kCutOrder, kCutoff},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLPF(asOrder(v[0]), v[1], fs); }},
    {"lowpass", {{"type", "cheby"}}, "setCoefLPFChev(order, freq, ripple, fs)", {kCutOrder, kPassEdge, kRipple},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLPFChev(asOrder(v[0]), v[1], v[2], fs); }},
    {"lowpass", {{"type", "icheby"}}, "setCoefLPFIChev(order, freq, stop-level, fs)",
     {kCutOrder, kStopEdge, kStopLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLPFIChev(asOrder(v[0]), v[1], v[2], fs); }},
    {"lowpass", {{"type", "q"}}, "setCoefLPFQfct(freq, q, fs)", {kCutoff, kCutQ},
     [](IirProcess& f, const double* v, double fs) { f.setCoefLPFQfct(v[0], v[1], fs); }},
    {"highpass", {{"type", "butter"}}, "setCoefHPF(order, freq, fs)", {kCutOrder, kCutoff},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHPF(asOrder(v[0]), v[1], fs); }},
    {"highpass", {{"type", "cheby"}}, "setCoefHPFChev(order, freq, ripple, fs)", {kCutOrder, kPassEdge, kRipple},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHPFChev(asOrder(v[0]), v[1], v[2], fs); }},
    {"highpass", {{"type", "icheby"}}, "setCoefHPFIChev(order, freq, stop-level, fs)",
     {kCutOrder, kStopEdge, kStopLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHPFIChev(asOrder(v[0]), v[1], v[2], fs); }},
    {"highpass", {{"type", "q"}}, "setCoefHPFQfct(freq, q, fs)", {kCutoff, kCutQ},
     [](IirProcess& f, const double* v, double fs) { f.setCoefHPFQfct(v[0], v[1], fs); }},
    // Band filters: second-order from a Q, or a low-pass prototype transformed.
    {"bandpass", {{"type", "q"}}, "setCoefBPFQfct(freq, q, fs)",
     {kBandCentre, {"q", Kind::Q, "centre / bandwidth; also the peak gain", 1.0}},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBPFQfct(v[0], v[1], fs); }},
    {"bandpass", {{"type", "q0"}}, "setCoefBPF_Q(freq, q, fs)",
     {kBandCentre, {"q", Kind::Q, "centre / bandwidth; the peak is 0 dB", 1.0}},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBPF_Q(v[0], v[1], fs); }},
    {"bandpass", {{"type", "butter"}}, "setCoefBPF(order, low, high, fs)", {kProtoOrder, kLowEdge, kHighEdge},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBPF(asOrder(v[0]), v[1], v[2], fs); }},
    {"bandpass", {{"type", "cheby"}}, "setCoefBPFChev(order, low, high, ripple, fs)",
     {kProtoOrder, kLowEdge, kHighEdge, kRipple},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBPFChev(asOrder(v[0]), v[1], v[2], v[3], fs); }},
    {"bandpass", {{"type", "icheby"}}, "setCoefBPFIChev(order, low, high, stop-level, fs)",
     {kProtoOrder, kLowStopEdge, kHighStopEdge, kStopLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBPFIChev(asOrder(v[0]), v[1], v[2], v[3], fs); }},
    {"bandstop", {{"type", "butter"}}, "setCoefBEF(order, low, high, fs)", {kProtoOrder, kLowEdge, kHighEdge},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBEF(asOrder(v[0]), v[1], v[2], fs); }},
    {"bandstop", {{"type", "cheby"}}, "setCoefBEFChev(order, low, high, ripple, fs)",
     {kProtoOrder, kLowEdge, kHighEdge, kRipple},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBEFChev(asOrder(v[0]), v[1], v[2], v[3], fs); }},
    {"bandstop", {{"type", "icheby"}}, "setCoefBEFIChev(order, low, high, stop-level, fs)",
     {kProtoOrder, kLowStopEdge, kHighStopEdge, kStopLevel},
     [](IirProcess& f, const double* v, double fs) { f.setCoefBEFIChev(asOrder(v[0]), v[1], v[2], v[3], fs); }},
    // DC filters and all-pass sections.
    {"dc-lowpass", {{"form", "freq"}}, "setDcfLPF(freq, fs)", {kDcCorner},
     [](IirProcess& f, const double* v, double fs) { f.setDcfLPF(v[0], fs); }},
    {"dc-lowpass", {{"form", "alpha"}}, "setDcfLPF(alpha)",
     {{"alpha", Kind::LowpassAlpha, "y = alpha*x + (1 - alpha)*y1; stable for 0 < alpha < 2", {}}},
     [](IirProcess& f, const double* v, double) { f.setDcfLPF(v[0]); }},
    {"dc-highpass", {{"form", "freq"}}, "setDcfHPF(freq, fs)", {kDcCorner},
     [](IirProcess& f, const double* v, double fs) { f.setDcfHPF(v[0], fs); }},
    {"dc-highpass", {{"form", "alpha"}}, "setDcfHPF(alpha)",
     {{"alpha", Kind::HighpassAlpha, "pole at 1 - alpha/2; stable for 0 < alpha < 4", {}}},
     [](IirProcess& f, const double* v, double) { f.setDcfHPF(v[0]); }},
    {"allpass", {{"order", "1"}}, "setAPF1st(freq, fs)", {kAllpassFreq},
     [](IirProcess& f, const double* v, double fs) { f.setAPF1st(v[0], fs); }},
    {"allpass", {{"order", "2"}}, "setAPF2nd(freq, fs)", {kAllpassFreq},
     [](IirProcess& f, const double* v, double fs) { f.setAPF2nd(v[0], fs); }},
};

}  // namespace

const std::vector<Family>& families() { return kFamilies; }
const std::vector<DesignRow>& designRows() { return kRows; }

}  // namespace mivora_tool
