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
//          alpha() lin() cst() zero() value() sample()
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
};

template <class D>
inline constexpr std::size_t kOperationCount = sizeof(kOperations<D>) / sizeof(kOperations<D>[0]);

}  // namespace mivora_test

#endif
