// libFuzzer target: the input bytes become a sequence of calls on one
// IirProcess, drawn from the table of every public operation, with arbitrary
// arguments (NaN, infinities, -0.0, subnormals, huge values, any order).
//
// It checks, besides what AddressSanitizer and UndefinedBehaviorSanitizer see:
//  - the object lives in a heap block of exactly CalculateWorkSize() bytes and
//    every caller buffer is exactly as large as documented, so any access
//    outside them is reported;
//  - read-outs leave the entries they do not document untouched (canaries);
//  - an operation changes only the parts of the object it is allowed to
//    (processing never a coefficient, a design never the first-order state,
//    a query nothing), and doProcess writes nothing into a separate input;
//  - the order stays within the storage;
//  - the same calls again give the same bits, and the same calls with every
//    order argument clamped beforehand give the same bits too.
#include <mivora/IirProcess.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

#include "iir_process_access.hpp"
#include "operation_table.hpp"

namespace {

using mivora_test::Block;
using mivora_test::IirProcess;


[[noreturn]] void fail(const char* operation, const char* what) {
    std::fprintf(stderr, "mivora_fuzz_api: after %s: %s\n", operation, what);
    std::abort();
}

// Bit pattern left in caller arrays where nothing may be written.
constexpr std::uint64_t kCanary = 0x7ff4c0ffee15dea1u;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kSpecialReals[] = {
    0.0,     -0.0,   1.0,     -1.0,    0.5,      2.0,      kNaN,     -kNaN,   kInf,    -kInf,
    DBL_MIN, -DBL_MIN, std::numeric_limits<double>::denorm_min(), DBL_MAX, -DBL_MAX, 1e-300, 1e300,
    48000.0, 44100.0, 96000.0, 1000.0, 20.0,  20000.0, 24000.0, 48000.0 / 3.0, 0.7071067811865476,
    10.0,    -10.0,  100.0,   -100.0,  960.0,    360.0,    3.0,      -3.0,    1e-9,    12.0,     0.999999,
};
constexpr int kSpecialInts[] = {0,  1,  2,  3,  4,  5,  -1,  -2,  -3,  -4,  -5,  6,
                                7,  -6, -7, 8,  10, -10, 100, -100, 1 << 30, -(1 << 30),
                                std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};

constexpr unsigned int kMaxBlock = 2048;

// Turns bytes into arguments; every call also appends what it returns or
// receives to the trace. Past the end of the input every byte reads as 0.
class ByteDriver {
public:
    ByteDriver(const std::uint8_t* data, std::size_t size, bool clampOrders, std::vector<std::uint64_t>& trace)
        : data_(data), size_(size), clamp_(clampOrders), trace_(trace) {}

    bool more() const { return pos_ < size_; }
    std::uint8_t byte() { return pos_ < size_ ? data_[pos_++] : 0; }

    double freq() { return real(); }
    double fs() { return real(); }
    double gainDb() { return real(); }
    double q() { return real(); }
    double ripple() { return real(); }
    double stopLevel() { return real(); }
    double weight() { return real(); }
    double levelDb() { return real(); }
    double alpha() { return real(); }
    double bandLow() { return real(); }
    double bandHigh() { return real(); }
    double warped() { return real(); }
    double lin() { return real(); }
    double cst() { return real(); }
    double zero() { return real(); }
    double value() { return real(); }
    double sample() { return real(); }
    int intSample() { return integer(); }
    int order() {
        const int n = integer();
        return clamp_ ? std::clamp(n, -IirProcess::maxOrder, IirProcess::maxOrder) : n;
    }
    int protoOrder() {
        const int n = integer();
        return clamp_ ? std::clamp(n, 0, IirProcess::maxProtoOrder) : n;
    }
    short type() {
        std::int16_t t = 0;
        raw(&t, sizeof t);
        return t;
    }
    // Never dereferenced by the library; any value will do.
    Mivora::VqMemAlloc* alloc() {
        return reinterpret_cast<Mivora::VqMemAlloc*>(static_cast<std::uintptr_t>(byte()) * 0x1000u);
    }

    // Exactly count floats, in place or into a separate exact-size array.
    Block block() {
        const unsigned int count = (byte() | (static_cast<unsigned int>(byte()) << 8)) % (kMaxBlock + 1);
        const std::uint8_t mode = byte();
        in_.reset(new float[count]);
        fillSamples(in_.get(), count, mode >> 1);
        inCopy_.assign(in_.get(), in_.get() + count);
        if ((mode & 1) != 0) {
            out_.reset();
            return {in_.get(), in_.get(), count};
        }
        out_.reset(new float[count]);
        std::fill(out_.get(), out_.get() + count, 0.0f);
        return {in_.get(), out_.get(), count};
    }
    void processed(const Block& b) {
        if (b.count > 0 && b.out != b.in && std::memcmp(b.in, inCopy_.data(), b.count * sizeof(float)) != 0)
            fail("doProcess", "wrote into its separate input");
        for (unsigned int i = 0; i < b.count; ++i) {
            std::uint32_t bits;
            std::memcpy(&bits, &b.out[i], sizeof bits);
            trace_.push_back(bits);
        }
    }

    // maxCoefCount doubles, all canaries, in a block of exactly that size.
    double* outArray() {
        array_.reset(new double[IirProcess::maxCoefCount]);
        for (int i = 0; i < IirProcess::maxCoefCount; ++i) std::memcpy(&array_[i], &kCanary, sizeof kCanary);
        return array_.get();
    }
    // getCoef writes the running second-order sections (five zeros at
    // evenOrder 0), then the first-order three after them when oddOrder != 0.
    void coefficientsRead(const IirProcess& f, const double* c) {
        const int even = f.getEvenOrder();
        const int sectionEntries = even >= 2 ? 5 * (even / 2) : 0;
        bool documented[IirProcess::maxCoefCount] = {};
        for (int i = 0; i < (even == 0 ? 5 : sectionEntries); ++i) documented[i] = true;
        if (f.getOddOrder() != 0)
            for (int i = sectionEntries; i < sectionEntries + 3; ++i) documented[i] = true;
        for (int i = 0; i < IirProcess::maxCoefCount; ++i) {
            if (documented[i])
                record(c[i]);
            else if (!isCanary(c[i]))
                fail("getCoef", "wrote an entry it does not document");
        }
    }
    void written(const double* v, int n) {
        for (int i = 0; i < IirProcess::maxCoefCount; ++i) {
            if (i < n)
                record(v[i]);
            else if (!isCanary(v[i]))
                fail("a read-out", "wrote past the values it documents");
        }
    }
    void result(double v) { record(v); }

private:
    double real() {
        const std::uint8_t sel = byte();
        constexpr std::size_t n = sizeof kSpecialReals / sizeof kSpecialReals[0];
        if (sel < 160) return kSpecialReals[sel % n];
        double v;
        raw(&v, sizeof v);
        return v;
    }
    int integer() {
        const std::uint8_t sel = byte();
        constexpr std::size_t n = sizeof kSpecialInts / sizeof kSpecialInts[0];
        if (sel < 200) return kSpecialInts[sel % n];
        std::int32_t v;
        raw(&v, sizeof v);
        return v;
    }
    void raw(void* out, std::size_t n) {
        auto* p = static_cast<std::uint8_t*>(out);
        for (std::size_t i = 0; i < n; ++i) p[i] = byte();
    }
    void fillSamples(float* s, unsigned int count, unsigned int kind) {
        constexpr float kSpecialSamples[] = {std::numeric_limits<float>::quiet_NaN(),
                                             std::numeric_limits<float>::infinity(),
                                             -std::numeric_limits<float>::infinity(),
                                             FLT_MAX,
                                             -FLT_MAX,
                                             std::numeric_limits<float>::denorm_min(),
                                             -0.0f,
                                             1.0f};
        std::uint32_t lcg = byte() + 1u;
        for (unsigned int i = 0; i < count; ++i) {
            lcg = lcg * 1664525u + 1013904223u;
            const float noise = static_cast<float>(static_cast<std::int32_t>(lcg)) * (1.0f / 2147483648.0f);
            switch (kind % 4) {
                case 0: s[i] = 0.0f; break;
                case 1: s[i] = noise; break;
                case 2: s[i] = (lcg >> 28) == 0 ? kSpecialSamples[(lcg >> 8) % 8] : noise; break;
                default: raw(&s[i], sizeof s[i]); break;
            }
        }
    }
    static bool isCanary(double v) {
        std::uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        return bits == kCanary;
    }
    void record(double v) {
        std::uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        trace_.push_back(bits);
    }

    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t pos_ = 0;
    bool clamp_;
    std::vector<std::uint64_t>& trace_;
    std::unique_ptr<float[]> in_, out_;
    std::vector<float> inCopy_;
    std::unique_ptr<double[]> array_;
};

using Operation = mivora_test::Operation<ByteDriver>;
constexpr const auto& kOperations = mivora_test::kOperations<ByteDriver>;
constexpr std::size_t kOperationCount = mivora_test::kOperationCount<ByteDriver>;

// The object's observable parts: its state and coefficients (field by
// field, through the tests' accessor), the order fields and the allocator.
struct Snapshot {
    std::vector<double> doubles;
    int order, evenOrder, oddOrder;
    const Mivora::VqMemAlloc* alloc;

    explicit Snapshot(const IirProcess& f)
        : doubles(mivora_test::raw(f)), order(f.getOrder()), evenOrder(f.getEvenOrder()), oddOrder(f.getOddOrder()),
          alloc(f.getMemAlloc()) {}
    // Bit for bit, NaN payloads included.
    bool sameField(const Snapshot& o, mivora_test::Field field) const {
        const auto& starts = Mivora::detail::IirProcessAccess::kStarts;
        const std::size_t first = starts[field], end = field + 1 < 4 ? starts[field + 1] : doubles.size();
        return std::memcmp(doubles.data() + first, o.doubles.data() + first, (end - first) * sizeof(double)) == 0;
    }
};

void checkRegions(const Snapshot& before, const Snapshot& after, const Operation& op) {
    using namespace mivora_test;  // the Region names
    struct Part {
        unsigned region;
        Field field;
        const char* what;
    };
    const Part parts[] = {
        {kState2, kDelayField, "changed the second-order state"},
        {kCoef2, kCoefField, "changed second-order coefficients"},
        {kState1, kDelay1stField, "changed the first-order state"},
        {kCoef1, kCoef1stField, "changed first-order coefficients"},
    };
    for (const Part& p : parts)
        if ((op.mayChange & p.region) == 0 && !before.sameField(after, p.field)) fail(op.name, p.what);
    if ((op.mayChange & kOrderFields) == 0 &&
        (before.order != after.order || before.evenOrder != after.evenOrder || before.oddOrder != after.oddOrder))
        fail(op.name, "changed the order");
    if ((op.mayChange & kAllocator) == 0 && before.alloc != after.alloc) fail(op.name, "changed the allocator");
}

void checkOrder(const Snapshot& s, const Operation& op) {
    const bool inRange = s.order >= -IirProcess::maxOrder && s.order <= IirProcess::maxOrder;
    const bool split = s.evenOrder % 2 == 0 && s.oddOrder >= -1 && s.oddOrder <= 1 && s.evenOrder + s.oddOrder == s.order;
    if (!inRange || !split) fail(op.name, "left an order outside the storage");
}

struct Trace {
    std::vector<std::uint64_t> values;
    std::vector<double> finalDoubles;
};

Trace runSequence(const std::uint8_t* data, std::size_t size, bool clampOrders) {
    Trace trace;
    const std::size_t bytes = IirProcess::CalculateWorkSize();
    std::unique_ptr<unsigned char[]> storage(new unsigned char[bytes]);
    std::memset(storage.get(), 0xa5, bytes);
    IirProcess* f = ::new (static_cast<void*>(storage.get())) IirProcess;

    ByteDriver driver(data, size, clampOrders, trace.values);
    while (driver.more()) {
        const Operation& op = kOperations[driver.byte() % kOperationCount];
        const Snapshot before(*f);
        op.run(*f, driver);
        const Snapshot after(*f);
        checkRegions(before, after, op);
        checkOrder(after, op);
    }
    const Snapshot last(*f);
    trace.finalDoubles = last.doubles;
    trace.values.push_back(static_cast<std::uint64_t>(static_cast<std::uint32_t>(last.order)));
    f->~IirProcess();
    return trace;
}

// Bit for bit, NaN payloads included.
bool operator==(const Trace& a, const Trace& b) {
    return a.values == b.values && a.finalDoubles.size() == b.finalDoubles.size() &&
           std::memcmp(a.finalDoubles.data(), b.finalDoubles.data(), a.finalDoubles.size() * sizeof(double)) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Trace first = runSequence(data, size, false);
    if (!(runSequence(data, size, false) == first)) fail("the whole sequence", "a repeat gave other bits");
    if (!(runSequence(data, size, true) == first))
        fail("the whole sequence", "clamping the order arguments first gave other bits");
    return 0;
}
