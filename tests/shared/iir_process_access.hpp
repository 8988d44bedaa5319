// The one door to IirProcess's private layout, for the tests, the fuzzer and
// the benchmarks, which plant coefficients and state directly or compare all
// of an object's doubles: a layout change is an edit here and nowhere else.
#ifndef MIVORA_IIR_PROCESS_ACCESS_HPP
#define MIVORA_IIR_PROCESS_ACCESS_HPP

#include <mivora/IirProcess.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

namespace Mivora::detail {

struct IirProcessAccess {
    // The object's arrays of doubles with their lengths, in a fixed order:
    // second-order state (x1 x2 y1 y2 per section), second-order
    // coefficients (b0 b1 b2 a1 a2 per section), first-order state (x1 y1)
    // and first-order coefficients (b0 b1 a1). Object: IirProcess, or const.
    template <class Object>
    static auto fields(Object& f) noexcept {
        using D = std::conditional_t<std::is_const_v<Object>, const double, double>;
        return std::array<std::pair<D*, std::size_t>, 4>{{{f.delay, std::size(f.delay)},
                                                          {f.coef, std::size(f.coef)},
                                                          {f.delay1st, std::size(f.delay1st)},
                                                          {f.coef1st, std::size(f.coef1st)}}};
    }
    // Where each field starts among all the doubles, taken field after field.
    static constexpr std::array<std::size_t, 4> kStarts = {
        0, sizeof(IirProcess::delay) / sizeof(double),
        (sizeof(IirProcess::delay) + sizeof(IirProcess::coef)) / sizeof(double),
        (sizeof(IirProcess::delay) + sizeof(IirProcess::coef) + sizeof(IirProcess::delay1st)) / sizeof(double)};
};

}  // namespace Mivora::detail

namespace mivora_test {

using Mivora::IirProcess;
enum Field { kDelayField, kCoefField, kDelay1stField, kCoef1stField };

// Every double of the object, field after field.
inline std::vector<double> raw(const IirProcess& f) {
    std::vector<double> v;
    for (auto [data, n] : Mivora::detail::IirProcessAccess::fields(f)) v.insert(v.end(), data, data + n);
    return v;
}
// The reverse of raw.
inline void setRaw(IirProcess& f, const std::vector<double>& v) {
    auto from = v.begin();
    for (auto [data, n] : Mivora::detail::IirProcessAccess::fields(f)) {
        std::copy_n(from, n, data);
        from += static_cast<std::ptrdiff_t>(n);
    }
}
// One field of the object.
inline std::pair<double*, std::size_t> field(IirProcess& f, Field which) {
    return Mivora::detail::IirProcessAccess::fields(f)[which];
}
// An object of the order given holding section 0, section 1 and the
// first-order section as getCoef lays them out at order 5; the rest zero.
inline IirProcess holding(int order, const std::array<double, 13>& c) {
    IirProcess f(order);
    std::copy(c.begin(), c.begin() + 10, field(f, kCoefField).first);
    std::copy(c.begin() + 10, c.end(), field(f, kCoef1stField).first);
    return f;
}

}  // namespace mivora_test

#endif
