// A driver for the operation table with meaningful arguments (audio
// frequencies, gains, Q values, orders 0..5), cycling through a few of each so
// that repeated rounds design different filters. It never allocates, and it
// folds every result into a digest so two runs can be compared.
#ifndef MIVORA_TYPICAL_DRIVER_HPP
#define MIVORA_TYPICAL_DRIVER_HPP

#include <cstdint>
#include <cstring>
#include <iterator>

#include "operation_table.hpp"

namespace mivora_test {

// `T name()` returning the listed values in turn, round and round.
#define MIVORA_CYCLE(T, name, ...)                          \
    T name() {                                              \
        static constexpr T values[] = {__VA_ARGS__};        \
        return values[name##At_++ % std::size(values)];    \
    }                                                       \
    std::size_t name##At_ = 0;

class TypicalDriver {
public:
    static constexpr unsigned int kBlockSize = 256;

    MIVORA_CYCLE(double, freq, 1000.0, 60.0, 4000.0, 250.0, 12000.0, 20.0)
    MIVORA_CYCLE(double, fs, 48000.0, 44100.0, 96000.0)
    MIVORA_CYCLE(double, gainDb, 6.0, -9.0, 12.0, -3.0, 0.0)
    MIVORA_CYCLE(double, q, 0.7071, 2.0, 0.5, 4.0)
    MIVORA_CYCLE(double, ripple, 1.0, 0.5, 3.0)
    MIVORA_CYCLE(double, stopLevel, 0.0, 360.0, 120.0)
    MIVORA_CYCLE(double, weight, 0.0, 0.5, 1.0)
    MIVORA_CYCLE(double, levelDb, 0.0, -3.0, -100.0)
    MIVORA_CYCLE(double, alpha, 0.01, 0.3)
    MIVORA_CYCLE(double, bandLow, 300.0, 1000.0, 80.0)
    MIVORA_CYCLE(double, bandHigh, 3000.0, 8000.0, 160.0)
    MIVORA_CYCLE(double, warped, 0.05, 0.2, 0.6)
    MIVORA_CYCLE(double, lin, 1.4142135623730951, 0.7653668647301796, 1.8477590650225735)
    MIVORA_CYCLE(double, cst, 1.0, 0.5, 2.0)
    MIVORA_CYCLE(double, zero, 4.0, 2.5)
    MIVORA_CYCLE(double, value, 0.0, 0.25)
    MIVORA_CYCLE(double, sample, 0.5, -0.25, 1.0, 0.0)
    MIVORA_CYCLE(int, intSample, 3, -2, 0)
    MIVORA_CYCLE(int, order, 2, 5, 1, 4, 3, 0)
    MIVORA_CYCLE(int, protoOrder, 1, 2)
    MIVORA_CYCLE(short, type, 0, 1)
    Mivora::VqMemAlloc* alloc() { return nullptr; }

    // A block of noise in [-1, 1), processed in place every other time.
    Block block() {
        for (float& s : in_) {
            lcg_ = lcg_ * 6364136223846793005u + 1442695040888963407u;
            s = static_cast<float>(static_cast<std::int32_t>(lcg_ >> 32)) * (1.0f / 2147483648.0f);
        }
        inPlace_ = !inPlace_;
        return {in_, inPlace_ ? in_ : out_, kBlockSize};
    }
    double* outArray() { return static_cast<double*>(std::memset(array_, 0, sizeof array_)); }

    void result(double v) { mix(&v, sizeof v); }
    void processed(const Block& b) { mix(b.out, b.count * sizeof(float)); }
    void coefficientsRead(const IirProcess&, const double* c) { written(c, IirProcess::maxCoefCount); }
    void written(const double* v, int n) { mix(v, static_cast<std::size_t>(n) * sizeof(double)); }
    std::uint64_t digest() const { return digest_; }

private:
    void mix(const void* p, std::size_t n) {
        const auto* bytes = static_cast<const unsigned char*>(p);
        for (std::size_t i = 0; i < n; ++i) digest_ = (digest_ ^ bytes[i]) * 1099511628211u;
    }

    std::uint64_t lcg_ = 1;
    std::uint64_t digest_ = 14695981039346656037u;
    bool inPlace_ = false;
    float in_[kBlockSize] = {};
    float out_[kBlockSize] = {};
    double array_[IirProcess::maxCoefCount] = {};
};

#undef MIVORA_CYCLE

}  // namespace mivora_test

#endif
