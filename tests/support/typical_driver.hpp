// A driver for the operation table with meaningful arguments (audio
// frequencies, gains, Q values, orders 0..5), cycling through a few of each so
// that repeated rounds design different filters. It never allocates, and it
// folds every result into a digest so two runs can be compared.
#ifndef MIVORA_TYPICAL_DRIVER_HPP
#define MIVORA_TYPICAL_DRIVER_HPP

#include <cstdint>
#include <cstring>

#include "operation_table.hpp"

namespace mivora_test {

class TypicalDriver {
public:
    static constexpr unsigned int kBlockSize = 256;

    double freq() { return next(kFreqs, freq_); }
    double fs() { return next(kRates, fs_); }
    double gainDb() { return next(kGains, gain_); }
    double q() { return next(kQs, q_); }
    double ripple() { return next(kRipples, ripple_); }
    double stopLevel() { return next(kStopLevels, stop_); }
    double weight() { return next(kWeights, weight_); }
    double levelDb() { return next(kLevels, level_); }
    double alpha() { return next(kAlphas, alpha_); }
    double bandLow() { return next(kBandLows, bandLow_); }
    double bandHigh() { return next(kBandHighs, bandHigh_); }
    double warped() { return next(kWarped, warped_); }
    double lin() { return next(kLins, lin_); }
    double cst() { return next(kCsts, cst_); }
    double zero() { return next(kZeros, zero_); }
    double value() { return next(kValues, value_); }
    double sample() { return next(kSamples, sample_); }
    int intSample() { return next(kIntSamples, intSample_); }
    int order() { return next(kOrders, order_); }
    int protoOrder() { return next(kProtoOrders, proto_); }
    short type() { return next(kTypes, type_); }
    Mivora::VqMemAlloc* alloc() { return nullptr; }

    // A block of noise in [-1, 1), processed in place every other time.
    Block block() {
        for (float& s : in_) s = noise();
        inPlace_ = !inPlace_;
        return {in_, inPlace_ ? in_ : out_, kBlockSize};
    }
    double* outArray() {
        std::memset(array_, 0, sizeof array_);
        return array_;
    }

    void result(double v) { mix(&v, sizeof v); }
    void processed(const Block& b) { mix(b.out, b.count * sizeof(float)); }
    void coefficientsRead(const IirProcess&, const double* c) { written(c, IirProcess::maxCoefCount); }
    void written(const double* v, int n) { mix(v, static_cast<std::size_t>(n) * sizeof(double)); }

    std::uint64_t digest() const { return digest_; }

private:
    static constexpr double kFreqs[] = {1000.0, 60.0, 4000.0, 250.0, 12000.0, 20.0};
    static constexpr double kRates[] = {48000.0, 44100.0, 96000.0};
    static constexpr double kGains[] = {6.0, -9.0, 12.0, -3.0, 0.0};
    static constexpr double kQs[] = {0.7071, 2.0, 0.5, 4.0};
    static constexpr double kRipples[] = {1.0, 0.5, 3.0};
    static constexpr double kStopLevels[] = {0.0, 360.0, 120.0};
    static constexpr double kWeights[] = {0.0, 0.5, 1.0};
    static constexpr double kLevels[] = {0.0, -3.0, -100.0};
    static constexpr double kAlphas[] = {0.01, 0.3};
    static constexpr double kBandLows[] = {300.0, 1000.0, 80.0};
    static constexpr double kBandHighs[] = {3000.0, 8000.0, 160.0};
    static constexpr double kWarped[] = {0.05, 0.2, 0.6};
    static constexpr double kLins[] = {1.4142135623730951, 0.7653668647301796, 1.8477590650225735};
    static constexpr double kCsts[] = {1.0, 0.5, 2.0};
    static constexpr double kZeros[] = {4.0, 2.5};
    static constexpr double kValues[] = {0.0, 0.25};
    static constexpr double kSamples[] = {0.5, -0.25, 1.0, 0.0};
    static constexpr int kIntSamples[] = {3, -2, 0};
    static constexpr int kOrders[] = {2, 5, 1, 4, 3, 0};
    static constexpr int kProtoOrders[] = {1, 2};
    static constexpr short kTypes[] = {0, 1};

    template <class T, std::size_t N>
    static T next(const T (&values)[N], std::size_t& i) {
        const T v = values[i];
        i = (i + 1) % N;
        return v;
    }

    float noise() {
        lcg_ = lcg_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<float>(static_cast<std::int32_t>(lcg_ >> 32)) * (1.0f / 2147483648.0f);
    }

    void mix(const void* p, std::size_t n) {
        const auto* bytes = static_cast<const unsigned char*>(p);
        for (std::size_t i = 0; i < n; ++i) digest_ = (digest_ ^ bytes[i]) * 1099511628211u;
    }

    std::size_t freq_ = 0, fs_ = 0, gain_ = 0, q_ = 0, ripple_ = 0, stop_ = 0, weight_ = 0, level_ = 0,
                alpha_ = 0, bandLow_ = 0, bandHigh_ = 0, warped_ = 0, lin_ = 0, cst_ = 0, zero_ = 0, value_ = 0,
                sample_ = 0, intSample_ = 0, order_ = 0, proto_ = 0, type_ = 0;
    std::uint64_t lcg_ = 1;
    std::uint64_t digest_ = 14695981039346656037u;
    bool inPlace_ = false;
    float in_[kBlockSize] = {};
    float out_[kBlockSize] = {};
    double array_[IirProcess::maxCoefCount] = {};
};

}  // namespace mivora_test

#endif
