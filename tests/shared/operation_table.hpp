// Every public operation of IirProcess as one row of a table, for the checks
// that must cover the whole interface: allocation counting, the floating-point
// environment, threads and the fuzz target.
//
// A row fetches its arguments from a driver D (fuzz bytes, or a fixed set of
// meaningful values) in the order of the call, makes the call, and hands
// results back to the driver. Every call is checked to be noexcept at compile
// time: a public operation that loses noexcept stops this from compiling.
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
#include <tuple>
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
inline constexpr unsigned kStates = kState2 | kState1;

template <class D>
struct Operation {
    const char* name;
    Kind kind;
    unsigned mayChange;
    void (*run)(IirProcess&, D&);
};

template <class... A>
void reconstruct(IirProcess& f, A... args) noexcept {
    static_assert(std::is_nothrow_constructible_v<IirProcess, A...>);
    static_assert(std::is_nothrow_destructible_v<IirProcess>);
    f.~IirProcess();
    ::new (static_cast<void*>(&f)) IirProcess(args...);
}

// A row calling f.method with the listed driver values, fetched left to right
// (a braced list guarantees the order); a returned value goes to d.result.
#define MIVORA_OP(name, kind, mayChange, method, ...)                                   \
    {name, Kind::kind, mayChange, [](IirProcess& f, [[maybe_unused]] D& d) {           \
         std::apply(                                                                    \
             [&](auto... a) {                                                           \
                 static_assert(noexcept(f.method(a...)), #method " must be noexcept");  \
                 if constexpr (std::is_void_v<decltype(f.method(a...))>)                \
                     f.method(a...);                                                    \
                 else                                                                   \
                     d.result(static_cast<double>(f.method(a...)));                     \
             },                                                                         \
             std::tuple{__VA_ARGS__});                                                  \
     }}
// A section transform: the listed values, then an array that gets n values.
#define MIVORA_TRANSFORM(method, n, ...)                                                \
    {#method, Kind::Transform, 0, [](IirProcess&, D& d) {                               \
         std::apply(                                                                    \
             [&](auto... a) {                                                           \
                 double* out = d.outArray();                                            \
                 static_assert(noexcept(IirProcess::method(a..., out)));                \
                 IirProcess::method(a..., out);                                         \
                 d.written(out, n);                                                     \
             },                                                                         \
             std::tuple{__VA_ARGS__});                                                  \
     }}
#define MIVORA_SHELF(method) MIVORA_OP(#method, Design, kSectionDesign, method, d.freq(), d.gainDb(), d.fs())
#define MIVORA_TYPED_SHELF(method) \
    MIVORA_OP(#method "(type)", Design, kSectionDesign, method, d.freq(), d.gainDb(), d.fs(), d.type())
#define MIVORA_CORNER_SHELF(method) \
    MIVORA_OP(#method, Design, kCoef2, method, d.fs(), d.freq(), d.gainDb(), d.weight(), d.levelDb())
// A band design: prototype order and band edges, then the listed values.
#define MIVORA_BAND(method, ...) \
    MIVORA_OP(#method, Design, kSectionDesign, method, d.protoOrder(), d.bandLow(), d.bandHigh(), __VA_ARGS__)

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
    MIVORA_OP("CalculateWorkSize", Query, 0, CalculateWorkSize, ),
    MIVORA_OP("setOrder", State, kOrderFields, setOrder, d.order()),
    MIVORA_OP("clear", State, kState2 | kCoef2, clear, ),
    MIVORA_OP("clearDelay", State, kStates, clearDelay, ),
    MIVORA_OP("setDelay", State, kStates, setDelay, d.value()),
    {"getCoef", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         double* out = d.outArray();
         static_assert(noexcept(f.getCoef(out)));
         f.getCoef(out);
         d.coefficientsRead(f, out);
     }},
    {"getDelay", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         double* out = d.outArray();
         static_assert(noexcept(f.getDelay(out)));
         f.getDelay(out);
         d.written(out, 10);
     }},
    {"order getters", Kind::Query, 0,
     [](IirProcess& f, D& d) {
         static_assert(noexcept(f.getOrder()) && noexcept(f.getEvenOrder()) && noexcept(f.getOddOrder()) &&
                       noexcept(f.getMemAlloc()));
         d.result(f.getOrder());
         d.result(f.getEvenOrder());
         d.result(f.getOddOrder());
         d.result(f.getMemAlloc() == nullptr ? 0.0 : 1.0);
     }},

    // ---- processing ----
    {"doProcess", Kind::Process, kStates,
     [](IirProcess& f, D& d) {
         const Block b = d.block();
         static_assert(noexcept(f.doProcess(b.in, b.out, b.count)));
         f.doProcess(b.in, b.out, b.count);
         d.processed(b);
     }},
    MIVORA_OP("cal(double)", Process, kStates, cal, d.sample()),
    MIVORA_OP("cal(int)", Process, kStates, cal, d.intSample()),
    MIVORA_OP("cal(order, double)", Process, kStates, cal, d.order(), d.sample()),

    // ---- peaking ----
    MIVORA_OP("setCoefPDFPQ", Design, kSectionDesign, setCoefPDFPQ, d.freq(), d.fs(), d.gainDb(), d.q()),
    MIVORA_OP("setCoefPDFCQ", Design, kSectionDesign, setCoefPDFCQ, d.freq(), d.fs(), d.gainDb(), d.q()),
    MIVORA_OP("setCoef", Design, kSectionDesign, setCoef, d.freq(), d.fs(), d.gainDb(), d.q()),

    // ---- first-order shelves ----
    MIVORA_SHELF(setCoefLOWS_A), MIVORA_SHELF(setCoefLOWS_B), MIVORA_SHELF(setCoefLOWS),
    MIVORA_TYPED_SHELF(setCoefLOWS),
    MIVORA_SHELF(setCoefHIGS_A), MIVORA_SHELF(setCoefHIGS_B), MIVORA_SHELF(setCoefHIGS),
    MIVORA_TYPED_SHELF(setCoefHIGS),

    // ---- second-order shelves ----
    MIVORA_SHELF(setCoefLOWS_2A), MIVORA_SHELF(setCoefLOWS_2B), MIVORA_SHELF(setCoefLOWS_PM_2A),
    MIVORA_SHELF(setCoefLOWS_PM_2B), MIVORA_SHELF(setCoefHIGS_2A), MIVORA_SHELF(setCoefHIGS_2B),
    MIVORA_SHELF(setCoefHIGS_PM_2A), MIVORA_SHELF(setCoefHIGS_PM_2B), MIVORA_SHELF(setCoefLOWS_2),
    MIVORA_TYPED_SHELF(setCoefLOWS_2), MIVORA_SHELF(setCoefHIGS_2), MIVORA_TYPED_SHELF(setCoefHIGS_2),

    // ---- shelves with corner placement: section 0's coefficients only ----
    MIVORA_CORNER_SHELF(setCoefLowShelf_C), MIVORA_CORNER_SHELF(setCoefHiShelf_C),
    MIVORA_CORNER_SHELF(setCoefLowShelf_2C), MIVORA_CORNER_SHELF(setCoefHiShelf_2C),

    // ---- cut filters ----
    MIVORA_OP("setCoefHPF(order)", Design, kOddDesign, setCoefHPF, d.order(), d.freq(), d.fs()),
    MIVORA_OP("setCoefLPF(order)", Design, kOddDesign, setCoefLPF, d.order(), d.freq(), d.fs()),
    MIVORA_OP("setCoefHPF", Design, kSectionDesign, setCoefHPF, d.freq(), d.fs()),
    MIVORA_OP("setCoefLPF", Design, kSectionDesign, setCoefLPF, d.freq(), d.fs()),
    MIVORA_OP("setCoefHPFChev", Design, kOddDesign, setCoefHPFChev, d.order(), d.freq(), d.ripple(), d.fs()),
    MIVORA_OP("setCoefLPFChev", Design, kOddDesign, setCoefLPFChev, d.order(), d.freq(), d.ripple(), d.fs()),
    MIVORA_OP("setCoefHPFIChev", Design, kOddDesign, setCoefHPFIChev, d.order(), d.freq(), d.stopLevel(), d.fs()),
    MIVORA_OP("setCoefLPFIChev", Design, kOddDesign, setCoefLPFIChev, d.order(), d.freq(), d.stopLevel(), d.fs()),
    MIVORA_OP("setCoefHPFQfct", Design, kSectionDesign, setCoefHPFQfct, d.freq(), d.q(), d.fs()),
    MIVORA_OP("setCoefLPFQfct", Design, kSectionDesign, setCoefLPFQfct, d.freq(), d.q(), d.fs()),

    // ---- band filters ----
    MIVORA_OP("setCoefBPFQfct", Design, kSectionDesign, setCoefBPFQfct, d.freq(), d.q(), d.fs()),
    MIVORA_OP("setCoefBPF_Q", Design, kSectionDesign, setCoefBPF_Q, d.freq(), d.q(), d.fs()),
    MIVORA_BAND(setCoefBPF, d.fs()), MIVORA_BAND(setCoefBEF, d.fs()),
    MIVORA_BAND(setCoefBPFChev, d.ripple(), d.fs()), MIVORA_BAND(setCoefBEFChev, d.ripple(), d.fs()),
    MIVORA_BAND(setCoefBPFIChev, d.stopLevel(), d.fs()), MIVORA_BAND(setCoefBEFIChev, d.stopLevel(), d.fs()),

    // ---- DC filters and all-pass sections ----
    MIVORA_OP("setDcfLPF(freq, fs)", Design, kOddDesign, setDcfLPF, d.freq(), d.fs()),
    MIVORA_OP("setDcfLPF(alpha)", Design, kOddDesign, setDcfLPF, d.alpha()),
    MIVORA_OP("setDcfHPF(freq, fs)", Design, kOddDesign, setDcfHPF, d.freq(), d.fs()),
    MIVORA_OP("setDcfHPF(alpha)", Design, kOddDesign, setDcfHPF, d.alpha()),
    MIVORA_OP("setAPF1st", Design, kSectionDesign, setAPF1st, d.freq(), d.fs()),
    MIVORA_OP("setAPF2nd", Design, kSectionDesign, setAPF2nd, d.freq(), d.fs()),

    // ---- response ----
    MIVORA_OP("power", Query, 0, power, d.freq(), d.fs()),
    MIVORA_OP("phase", Query, 0, phase, d.freq(), d.fs()),

    // ---- section transforms: nothing of the object ----
    MIVORA_TRANSFORM(HpfCoefToZet, 5, d.lin(), d.cst()),
    MIVORA_TRANSFORM(LpfCoefToZet, 5, d.lin(), d.cst()),
    MIVORA_TRANSFORM(BpfCoefToZet, 5, d.lin(), d.cst()),
    MIVORA_TRANSFORM(IChevHpfCoefToZet, 5, d.lin(), d.cst(), d.zero()),
    MIVORA_TRANSFORM(IChevLpfCoefToZet, 5, d.lin(), d.cst(), d.zero()),
    MIVORA_TRANSFORM(BefCoefToZet, 5, d.lin(), d.cst(), d.zero()),
    {"BpfCoefTrans", Kind::Transform, 0,
     [](IirProcess&, D& d) {
         const double lin = d.lin(), cst = d.cst(), wLow = d.warped(), wHigh = d.warped();
         double* out = d.outArray();
         static_assert(noexcept(IirProcess::BpfCoefTrans(lin, cst, wLow, wHigh, out, out, out, out)));
         IirProcess::BpfCoefTrans(lin, cst, wLow, wHigh, out, out + 1, out + 2, out + 3);
         d.written(out, 4);
     }},
    {"BuboCoefTrans", Kind::Transform, 0,
     [](IirProcess&, D& d) {
         const double wLow = d.warped(), wHigh = d.warped(), zero = d.zero();
         double* out = d.outArray();
         static_assert(noexcept(IirProcess::BuboCoefTrans(wLow, wHigh, zero, out, out)));
         IirProcess::BuboCoefTrans(wLow, wHigh, zero, out, out + 1);
         d.written(out, 2);
     }},
};

#undef MIVORA_OP
#undef MIVORA_TRANSFORM
#undef MIVORA_SHELF
#undef MIVORA_TYPED_SHELF
#undef MIVORA_CORNER_SHELF
#undef MIVORA_BAND

template <class D>
inline constexpr std::size_t kOperationCount = sizeof(kOperations<D>) / sizeof(kOperations<D>[0]);

}  // namespace mivora_test

#endif
