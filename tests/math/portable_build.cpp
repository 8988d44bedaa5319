// The functions' portable build, compiled here with the tests' own flags
// (no FMA3), beside the entry points the test calls, which run the FMA3
// build on an x86-64 CPU that has it. The harness checks that both agree.
#include "accuracy_harness.hpp"

#include "atan_impl.hpp"
#include "exp_log_impl.hpp"
#include "hyperbolic_impl.hpp"
#include "pow_impl.hpp"
#include "sin_cos_tan_impl.hpp"

namespace mivora_math_test {

namespace i = Mivora::math::impl;

std::function<double(double)> portableUnary(const std::string& name) {
    static const std::vector<std::pair<std::string, double (*)(double)>> functions = {
        {"exp", i::explog::exp},
        {"exp10", i::explog::exp10},
        {"log", i::explog::log},
        {"log10", i::explog::log10},
        {"sinh", i::hyperbolic::sinh},
        {"cosh", i::hyperbolic::cosh},
        {"sin", i::sincostan::sin},
        {"cos", i::sincostan::cos},
        {"tan", i::sincostan::tan},
        {"sincos_sin", [](double x) { return i::sincostan::sincos(x).sin; }},
        {"sincos_cos", [](double x) { return i::sincostan::sincos(x).cos; }},
        {"atan", i::arctan::atan},
    };
    for (const auto& [n, f] : functions)
        if (n == name) return f;
    return {};
}

std::function<double(double, double)> portableBinary(const std::string& name) {
    if (name == "pow") return i::powers::pow;
    if (name == "atan2") return i::arctan::atan2;
    return {};
}

}  // namespace mivora_math_test
