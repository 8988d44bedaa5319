#include "response_table.hpp"

#include "escaping.hpp"
#include "numbers.hpp"
#include "sections.hpp"

#include <cmath>
#include <cstdio>
#include <sstream>

namespace mivora_tool {

std::vector<double> logSpaced(double from, double to, int points) {
    if (points == 1) return {from};
    std::vector<double> freqs;
    const double ratio = std::log(to / from);
    for (int i = 0; i < points; ++i) freqs.push_back(from * std::exp(ratio * i / (points - 1)));
    freqs.front() = from;
    freqs.back() = to;
    return freqs;
}

std::vector<ResponsePoint> sampleResponse(const Mivora::IirProcess& filter, double fs,
                                          const std::vector<double>& freqs) {
    std::vector<ResponsePoint> points;
    for (double f : freqs) points.push_back({f, filter.power(f, fs), filter.phase(f, fs)});
    return points;
}

std::string formatResponse(const Design& design, const std::vector<ResponsePoint>& points, TableFormat format) {
    std::ostringstream out;
    switch (format) {
    case TableFormat::Text: {
        out << "# " << design.label << "\n# " << design.call() << "\n";
        if (readSections(design.build()).firstOrder)
            out << "# phase covers the second-order sections; the first-order section is left out\n";
        out << "#   freq (Hz)     power (dB)   phase (rad)\n";
        char line[96];
        for (const ResponsePoint& p : points) {
            std::snprintf(line, sizeof line, "%13.6g  %13.6f  %12.6f\n", p.freq, p.powerDb, p.phaseRad);
            out << line;
        }
        break;
    }
    case TableFormat::Csv:
        out << "freq_hz,power_db,phase_rad\n";
        for (const ResponsePoint& p : points)
            out << exactNumber(p.freq) << "," << exactNumber(p.powerDb) << "," << exactNumber(p.phaseRad) << "\n";
        break;
    case TableFormat::Json:
        out << "{\n  \"design\": " << jsonString(design.label) << ",\n  \"call\": " << jsonString(design.call())
            << ",\n  \"fs\": " << jsonNumber(design.fs) << ",\n  \"points\": [";
        for (std::size_t i = 0; i < points.size(); ++i)
            out << (i ? ",\n    " : "\n    ") << "{\"freq\": " << jsonNumber(points[i].freq)
                << ", \"power_db\": " << jsonNumber(points[i].powerDb)
                << ", \"phase_rad\": " << jsonNumber(points[i].phaseRad) << "}";
        out << "\n  ]\n}\n";
        break;
    }
    return out.str();
}

}  // namespace mivora_tool
