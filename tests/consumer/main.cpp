// Uses the library as an outside program does and checks that what it links
// against behaves: a +6 dB peaking band reports +6 dB at its centre and 0 dB
// far from it, and a tone run through it comes out 6 dB louder
// (a NaN fails every check). Exits non-zero, saying why, when anything is off.
#include <mivora/IirProcess.h>

#include <cmath>
#include <cstdio>
#include <new>
#include <vector>

namespace {

int failures = 0;

void expectNear(const char* what, double got, double want, double tolerance) {
    const bool ok = std::fabs(got - want) <= tolerance;  // false for NaN too
    std::printf("%-34s %12.6f (want %g +- %g) %s\n", what, got, want, tolerance, ok ? "ok" : "FAIL");
    if (!ok) ++failures;
}

}  // namespace

int main() {
    constexpr double fs = 48000.0, centre = 1000.0, pi = 3.14159265358979323846;

    // Header and library must agree on the object's layout.
    expectNear("CalculateWorkSize - sizeof", static_cast<double>(Mivora::IirProcess::CalculateWorkSize()),
               static_cast<double>(sizeof(Mivora::IirProcess)), 0.0);

    alignas(Mivora::IirProcess) unsigned char storage[sizeof(Mivora::IirProcess)];
    auto* eq = new (storage) Mivora::IirProcess();
    eq->setCoefPDFPQ(centre, fs, 6.0, 1.0);

    expectNear("power at centre (dB)", eq->power(centre, fs), 6.0, 1e-6);
    expectNear("power at 20 Hz (dB)", eq->power(20.0, fs), 0.0, 0.05);

    // Two seconds of a 1 kHz tone; the second, once settled, is measured against
    // the tone's own power, amplitude^2 / 2 over its 1000 whole periods.
    const double amplitude = 0.25;
    std::vector<float> signal(2 * static_cast<std::size_t>(fs));
    for (std::size_t i = 0; i < signal.size(); ++i)
        signal[i] = static_cast<float>(amplitude * std::sin(2.0 * pi * centre * static_cast<double>(i) / fs));
    eq->doProcess(signal.data(), signal.data(), static_cast<unsigned>(signal.size()));

    double outPower = 0.0;
    for (std::size_t i = signal.size() / 2; i < signal.size(); ++i)
        outPower += static_cast<double>(signal[i]) * signal[i];
    outPower /= static_cast<double>(signal.size() / 2);
    expectNear("measured gain at centre (dB)", 10.0 * std::log10(outPower / (amplitude * amplitude / 2)), 6.0, 0.05);

    eq->~IirProcess();
    if (failures != 0) {
        std::printf("mivora_consumer: %d check(s) failed\n", failures);
        return 1;
    }
    std::printf("mivora_consumer: all checks passed\n");
    return 0;
}
