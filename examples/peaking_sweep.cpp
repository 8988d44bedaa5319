// Design a +6 dB peaking band at 1 kHz, run tones through it, and compare
// the gain measured on the output with the gain the filter reports.
#include <mivora/IirProcess.h>

#include <cmath>
#include <cstdio>
#include <new>
#include <vector>

namespace {

constexpr double kSampleRate = 48000.0;
constexpr double kPi = 3.14159265358979323846;

// RMS gain of a steady tone through the filter, after it has settled.
double measuredGainDb(Mivora::IirProcess& filter, double freq) {
    const unsigned settle = 48000, measure = 48000;
    std::vector<float> tone(settle + measure);
    for (std::size_t i = 0; i < tone.size(); ++i)
        tone[i] = static_cast<float>(0.5 * std::sin(2.0 * kPi * freq * static_cast<double>(i) / kSampleRate));
    std::vector<float> out(tone.size());
    filter.clearDelay();
    filter.doProcess(tone.data(), out.data(), static_cast<unsigned>(tone.size()));
    double inPower = 0.0, outPower = 0.0;
    for (std::size_t i = settle; i < tone.size(); ++i) {
        inPower += static_cast<double>(tone[i]) * tone[i];
        outPower += static_cast<double>(out[i]) * out[i];
    }
    return 10.0 * std::log10(outPower / inPower);
}

}  // namespace

int main() {
    // The object lives in memory we own; it never allocates.
    alignas(Mivora::IirProcess) static unsigned char storage[sizeof(Mivora::IirProcess)];
    static_assert(sizeof storage >= sizeof(Mivora::IirProcess));
    auto* filter = new (storage) Mivora::IirProcess();

    filter->setCoefPDFPQ(1000.0, kSampleRate, 6.0, 1.0);  // freq, fs, gain dB, Q

    std::printf("Peaking band: +6 dB at 1000 Hz, Q 1, fs %.0f Hz (object size %zu bytes)\n\n", kSampleRate,
                Mivora::IirProcess::CalculateWorkSize());
    std::printf("%10s  %14s  %14s\n", "freq (Hz)", "measured (dB)", "power() (dB)");
    for (double freq : {50.0, 200.0, 500.0, 800.0, 1000.0, 1250.0, 2000.0, 5000.0, 15000.0}) {
        std::printf("%10.0f  %14.3f  %14.3f\n", freq, measuredGainDb(*filter, freq), filter->power(freq, kSampleRate));
    }
    filter->~IirProcess();
    return 0;
}
