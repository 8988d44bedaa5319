// Every public operation of IirProcess as one row of a table, for the checks
// that must cover the whole interface: allocation counting, the floating-point
// environment, threads and the fuzz target.
//
// A row fetches its arguments from a driver D (fuzz bytes, or a fixed set of
// meaningful values) in a fixed order, makes the call, and hands results back
// to the driver. Calls go through `call`, which accepts only noexcept
// operations: a public operation that loses noexcept stops this from compiling.
//
// The driver provides, each returning the next value of its kind:
//   double freq() fs() gainDb() q() ripple() stopLevel() weight() levelDb()
//          alpha() bandLow() bandHigh() warped() lin() cst() zero() value()
//          sample()
//   int    order() protoOrder() intSample()      short type()
//   Mivora::VqMemAlloc* alloc()
//   Block  block()                     samples for doProcess (in may equal out)
//   double* outArray()                 maxCoefCount doubles for the read-outs
// and takes back:
//   void result(double)                a returned value
//   void processed(const Block&)       after doProcess
//   void coefficientsRead(const IirProcess&, const double*)   after getCoef
//   void written(const double*, int n) after a read-out of n values
#ifndef MIVORA_OPERATION_TABLE_HPP
#define MIVORA_OPERATION_TABLE_HPP

#include <mivora/IirProcess.h>

#include <new>
#include <type_traits>

namespace mivora_test {

using Mivora::IirProcess;

struct Block {
    float* in;
    float* out;
    unsigned int count;
};

// Parts of the object an operation may change; anything else must keep its bits.
enum Region : unsigned {
    kState2 = 1u << 0,   // delay: second-order state
    kCoef2 = 1u << 1,    // coef: second-order coefficients
    kState1 = 1u << 2,   // delay1st
    kCoef1 = 1u << 3,    // coef1st
    kOrderFields = 1u << 4,
    kAllocator = 1u << 5,
    kEverything = (1u << 6) - 1,
};

enum class Kind { Construct, State, Process, Design, Query, Transform };

// A design that may change the order resets the second-order state and
// coefficients with it; the first-order state is never a design's to touch.
inline constexpr unsigned kSectionDesign = kOrderFields | kState2 | kCoef2;
inline constexpr unsigned kOddDesign = kSectionDesign | kCoef1;

template <class D>
struct Operation {
    const char* name;
    Kind kind;
    unsigned mayChange;
    void (*run)(IirProcess&, D&);
};

// ---- noexcept-only call helpers -------------------------------------------
// R defaults to void so that an overloaded name resolves from the arguments.

template <class R = void, class... P>
R call(IirProcess& f, R (IirProcess::*m)(P...) noexcept, P... args) noexcept {
    return (f.*m)(args...);
}
template <class R = void, class... P>
R call(const IirProcess& f, R (IirProcess::*m)(P...) const noexcept, P... args) noexcept {
    return (f.*m)(args...);
}
template <class R = void, class... P>
R call(R (*fn)(P...) noexcept, P... args) noexcept {
    return fn(args...);
}

template <class... A>
void reconstruct(IirProcess& f, A... args) noexcept {
    static_assert(std::is_nothrow_constructible_v<IirProcess, A...>);
    static_assert(std::is_nothrow_destructible_v<IirProcess>);
    f.~IirProcess();
    ::new (static_cast<void*>(&f)) IirProcess(args...);
}

// Designs with the argument pattern of their family. Each helper fetches the
// arguments in the order of the call.
template <class D>
void designFreqFsGainQ(IirProcess& f, D& d, void (IirProcess::*m)(double, double, double, double) noexcept) {
    const double freq = d.freq(), fs = d.fs(), gain = d.gainDb(), q = d.q();
    call(f, m, freq, fs, gain, q);
}
template <class D>
void designShelf(IirProcess& f, D& d, void (IirProcess::*m)(double, double, double) noexcept) {
    const double freq = d.freq(), gain = d.gainDb(), fs = d.fs();
    call(f, m, freq, gain, fs);
}
template <class D>
void designTypedShelf(IirProcess& f, D& d, void (IirProcess::*m)(double, double, double, short) noexcept) {
    const double freq = d.freq(), gain = d.gainDb(), fs = d.fs();
    const short type = d.type();
    call(f, m, freq, gain, fs, type);
}
template <class D>
void designFreqFs(IirProcess& f, D& d, void (IirProcess::*m)(double, double) noexcept) {
    const double freq = d.freq(), fs = d.fs();
    call(f, m, freq, fs);
}
template <class D>
void designAlpha(IirProcess& f, D& d, void (IirProcess::*m)(double) noexcept) {
    call(f, m, d.alpha());
}
template <class D>
void designCornerShelf(IirProcess& f, D& d, void (IirProcess::*m)(double, double, double, double, double) noexcept) {
    const double fs = d.fs(), freq = d.freq(), gain = d.gainDb(), weight = d.weight(), level = d.levelDb();
    call(f, m, fs, freq, gain, weight, level);
}
template <class D>
void designFreqQFs(IirProcess& f, D& d, void (IirProcess::*m)(double, double, double) noexcept) {
    const double freq = d.freq(), q = d.q(), fs = d.fs();
    call(f, m, freq, q, fs);
}
template <class D>
void designCut(IirProcess& f, D& d, void (IirProcess::*m)(int, double, double) noexcept) {
    const int order = d.order();
    const double freq = d.freq(), fs = d.fs();
    call(f, m, order, freq, fs);
}
// Chebyshev (shape: ripple) and inverse Chebyshev (shape: stopLevel) cuts.
template <class D>
void designShapedCut(IirProcess& f, D& d, double (D::*shape)(),
                     void (IirProcess::*m)(int, double, double, double) noexcept) {
    const int order = d.order();
    const double freq = d.freq(), s = (d.*shape)(), fs = d.fs();
    call(f, m, order, freq, s, fs);
}
template <class D>
void designBand(IirProcess& f, D& d, void (IirProcess::*m)(int, double, double, double) noexcept) {
    const int proto = d.protoOrder();
    const double low = d.bandLow(), high = d.bandHigh(), fs = d.fs();
    call(f, m, proto, low, high, fs);
}
template <class D>
void designShapedBand(IirProcess& f, D& d, double (D::*shape)(),
                      void (IirProcess::*m)(int, double, double, double, double) noexcept) {
    const int proto = d.protoOrder();
    const double low = d.bandLow(), high = d.bandHigh(), s = (d.*shape)(), fs = d.fs();
    call(f, m, proto, low, high, s, fs);
}
// Section transforms: analogue section in, five coefficients out.
template <class D>
void transform(D& d, void (*fn)(double, double, double*) noexcept) {
    const double lin = d.lin(), cst = d.cst();
    double* out = d.outArray();
    call(fn, lin, cst, out);
    d.written(out, 5);
}
template <class D>
void transformWithZero(D& d, void (*fn)(double, double, double, double*) noexcept) {
    const double lin = d.lin(), cst = d.cst(), zero = d.zero();
    double* out = d.outArray();
    call(fn, lin, cst, zero, out);
    d.written(out, 5);
}

template <class D>
inline constexpr Operation<D> kOperations[] = {
    // ---- object life, order and state ----
    {"IirProcess()", Kind::Construct, kEverything, [](IirProcess& f, D&) { reconstruct(f); }},
    {"IirProcess(alloc)", Kind::Construct, kEverything, [](IirProcess& f, D& d) { reconstruct(f, d.alloc()); }},
    {"IirProcess(order)", Kind::Construct, kEverything, [](IirProcess& f, D& d) { reconstruct(f, d.order()); }},
    {"IirProcess(alloc, order)", Kind::Construct, kEverything,
     [](IirProcess& f, D& d) {
         Mivora::VqMemAlloc* alloc = d.alloc();
         reconstruct(f, alloc, d.order());
     }},
    {"CalculateWorkSize", Kind::Query, 0,
     [](IirProcess&, D& d) { d.result(static_cast<double>(call(&IirProcess::CalculateWorkSize))); }},
    {"setOrder", Kind::State, kOrderFields, [](IirProcess& f, D& d) { call(f, &IirProcess::setOrder, d.order()); }},
    {"clear", Kind::State, kState2 | kCoef2, [](IirProcess& f, D&) { call(f, &IirProcess::clear); }},
    {"clearDelay", Kind::State, kState2 | kState1, [](IirProcess& f, D&) { call(f, &IirProcess::clearDelay); }},
    {"setDelay", Kind::State, kState2 | kState1, [](IirProcess& f, D& d) { call(f, &IirProcess::setDelay, d.value()); }},
    {"getCoef", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         double* out = d.outArray();
         call(f, &IirProcess::getCoef, out);
         d.coefficientsRead(f, out);
     }},
    {"getDelay", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         double* out = d.outArray();
         call(f, &IirProcess::getDelay, out);
         d.written(out, 10);
     }},
    {"order getters", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         d.result(call<int>(f, &IirProcess::getOrder));
         d.result(call<int>(f, &IirProcess::getEvenOrder));
         d.result(call<int>(f, &IirProcess::getOddOrder));
         d.result(call<Mivora::VqMemAlloc*>(f, &IirProcess::getMemAlloc) == nullptr ? 0.0 : 1.0);
     }},

    // ---- processing ----
    {"doProcess", Kind::Process, kState2 | kState1,
     [](IirProcess& f, D& d) {
         const Block b = d.block();
         call(f, &IirProcess::doProcess, b.in, b.out, b.count);
         d.processed(b);
     }},
    {"cal(double)", Kind::Process, kState2 | kState1,
     [](IirProcess& f, D& d) { d.result(call<double>(f, &IirProcess::cal, d.sample())); }},
    {"cal(int)", Kind::Process, kState2 | kState1,
     [](IirProcess& f, D& d) { d.result(call<double>(f, &IirProcess::cal, d.intSample())); }},
    {"cal(order, double)", Kind::Process, kState2 | kState1,
     [](IirProcess& f, D& d) {
         const int order = d.order();
         d.result(call<double>(f, &IirProcess::cal, order, d.sample()));
     }},

    // ---- peaking ----
    {"setCoefPDFPQ", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqFsGainQ(f, d, &IirProcess::setCoefPDFPQ); }},
    {"setCoefPDFCQ", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqFsGainQ(f, d, &IirProcess::setCoefPDFCQ); }},
    {"setCoef", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqFsGainQ(f, d, &IirProcess::setCoef); }},

    // ---- first-order shelves ----
    {"setCoefLOWS_A", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_A); }},
    {"setCoefLOWS_B", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_B); }},
    {"setCoefLOWS", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS); }},
    {"setCoefLOWS(type)", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designTypedShelf(f, d, &IirProcess::setCoefLOWS); }},
    {"setCoefHIGS_A", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_A); }},
    {"setCoefHIGS_B", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_B); }},
    {"setCoefHIGS", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS); }},
    {"setCoefHIGS(type)", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designTypedShelf(f, d, &IirProcess::setCoefHIGS); }},

    // ---- second-order shelves ----
    {"setCoefLOWS_2A", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_2A); }},
    {"setCoefLOWS_2B", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_2B); }},
    {"setCoefLOWS_PM_2A", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_PM_2A); }},
    {"setCoefLOWS_PM_2B", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_PM_2B); }},
    {"setCoefHIGS_2A", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_2A); }},
    {"setCoefHIGS_2B", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_2B); }},
    {"setCoefHIGS_PM_2A", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_PM_2A); }},
    {"setCoefHIGS_PM_2B", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_PM_2B); }},
    {"setCoefLOWS_2", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefLOWS_2); }},
    {"setCoefLOWS_2(type)", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designTypedShelf(f, d, &IirProcess::setCoefLOWS_2); }},
    {"setCoefHIGS_2", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designShelf(f, d, &IirProcess::setCoefHIGS_2); }},
    {"setCoefHIGS_2(type)", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designTypedShelf(f, d, &IirProcess::setCoefHIGS_2); }},

    // ---- shelves with corner placement: section 0's coefficients only ----
    {"setCoefLowShelf_C", Kind::Design, kCoef2,
     [](IirProcess& f, D& d) { designCornerShelf(f, d, &IirProcess::setCoefLowShelf_C); }},
    {"setCoefHiShelf_C", Kind::Design, kCoef2,
     [](IirProcess& f, D& d) { designCornerShelf(f, d, &IirProcess::setCoefHiShelf_C); }},
    {"setCoefLowShelf_2C", Kind::Design, kCoef2,
     [](IirProcess& f, D& d) { designCornerShelf(f, d, &IirProcess::setCoefLowShelf_2C); }},
    {"setCoefHiShelf_2C", Kind::Design, kCoef2,
     [](IirProcess& f, D& d) { designCornerShelf(f, d, &IirProcess::setCoefHiShelf_2C); }},

    // ---- cut filters ----
    {"setCoefHPF(order)", Kind::Design, kOddDesign, [](IirProcess& f, D& d) { designCut(f, d, &IirProcess::setCoefHPF); }},
    {"setCoefLPF(order)", Kind::Design, kOddDesign, [](IirProcess& f, D& d) { designCut(f, d, &IirProcess::setCoefLPF); }},
    {"setCoefHPF", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designFreqFs(f, d, &IirProcess::setCoefHPF); }},
    {"setCoefLPF", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designFreqFs(f, d, &IirProcess::setCoefLPF); }},
    {"setCoefHPFChev", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designShapedCut(f, d, &D::ripple, &IirProcess::setCoefHPFChev); }},
    {"setCoefLPFChev", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designShapedCut(f, d, &D::ripple, &IirProcess::setCoefLPFChev); }},
    {"setCoefHPFIChev", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designShapedCut(f, d, &D::stopLevel, &IirProcess::setCoefHPFIChev); }},
    {"setCoefLPFIChev", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designShapedCut(f, d, &D::stopLevel, &IirProcess::setCoefLPFIChev); }},
    {"setCoefHPFQfct", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqQFs(f, d, &IirProcess::setCoefHPFQfct); }},
    {"setCoefLPFQfct", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqQFs(f, d, &IirProcess::setCoefLPFQfct); }},

    // ---- band filters ----
    {"setCoefBPFQfct", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqQFs(f, d, &IirProcess::setCoefBPFQfct); }},
    {"setCoefBPF_Q", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designFreqQFs(f, d, &IirProcess::setCoefBPF_Q); }},
    {"setCoefBPF", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designBand(f, d, &IirProcess::setCoefBPF); }},
    {"setCoefBEF", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designBand(f, d, &IirProcess::setCoefBEF); }},
    {"setCoefBPFChev", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShapedBand(f, d, &D::ripple, &IirProcess::setCoefBPFChev); }},
    {"setCoefBEFChev", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShapedBand(f, d, &D::ripple, &IirProcess::setCoefBEFChev); }},
    {"setCoefBPFIChev", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShapedBand(f, d, &D::stopLevel, &IirProcess::setCoefBPFIChev); }},
    {"setCoefBEFIChev", Kind::Design, kSectionDesign,
     [](IirProcess& f, D& d) { designShapedBand(f, d, &D::stopLevel, &IirProcess::setCoefBEFIChev); }},

    // ---- DC filters and all-pass sections ----
    {"setDcfLPF(freq, fs)", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designFreqFs(f, d, &IirProcess::setDcfLPF); }},
    {"setDcfLPF(alpha)", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designAlpha(f, d, &IirProcess::setDcfLPF); }},
    {"setDcfHPF(freq, fs)", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designFreqFs(f, d, &IirProcess::setDcfHPF); }},
    {"setDcfHPF(alpha)", Kind::Design, kOddDesign,
     [](IirProcess& f, D& d) { designAlpha(f, d, &IirProcess::setDcfHPF); }},
    {"setAPF1st", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designFreqFs(f, d, &IirProcess::setAPF1st); }},
    {"setAPF2nd", Kind::Design, kSectionDesign, [](IirProcess& f, D& d) { designFreqFs(f, d, &IirProcess::setAPF2nd); }},

    // ---- response ----
    {"power", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         const double freq = d.freq(), fs = d.fs();
         d.result(call(f, &IirProcess::power, freq, fs));
     }},
    {"phase", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         const double freq = d.freq(), fs = d.fs();
         d.result(call(f, &IirProcess::phase, freq, fs));
     }},

    // ---- section transforms: nothing of the object ----
    {"HpfCoefToZet", Kind::Transform, 0, [](IirProcess&, D& d) { transform(d, &IirProcess::HpfCoefToZet); }},
    {"LpfCoefToZet", Kind::Transform, 0, [](IirProcess&, D& d) { transform(d, &IirProcess::LpfCoefToZet); }},
    {"BpfCoefToZet", Kind::Transform, 0, [](IirProcess&, D& d) { transform(d, &IirProcess::BpfCoefToZet); }},
    {"IChevHpfCoefToZet", Kind::Transform, 0,
     [](IirProcess&, D& d) { transformWithZero(d, &IirProcess::IChevHpfCoefToZet); }},
    {"IChevLpfCoefToZet", Kind::Transform, 0,
     [](IirProcess&, D& d) { transformWithZero(d, &IirProcess::IChevLpfCoefToZet); }},
    {"BefCoefToZet", Kind::Transform, 0, [](IirProcess&, D& d) { transformWithZero(d, &IirProcess::BefCoefToZet); }},
    {"BpfCoefTrans", Kind::Transform, 0,
     [](IirProcess&, D& d) {
         const double lin = d.lin(), cst = d.cst(), wLow = d.warped(), wHigh = d.warped();
         double* out = d.outArray();
         call(&IirProcess::BpfCoefTrans, lin, cst, wLow, wHigh, out, out + 1, out + 2, out + 3);
         d.written(out, 4);
     }},
    {"BuboCoefTrans", Kind::Transform, 0,
     [](IirProcess&, D& d) {
         const double wLow = d.warped(), wHigh = d.warped(), zero = d.zero();
         double* out = d.outArray();
         call(&IirProcess::BuboCoefTrans, wLow, wHigh, zero, out, out + 1);
         d.written(out, 2);
     }},
};

template <class D>
inline constexpr std::size_t kOperationCount = sizeof(kOperations<D>) / sizeof(kOperations<D>[0]);

}  // namespace mivora_test

#endif
