#include "svg_plot.hpp"

#include "escaping.hpp"
#include "numbers.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <sstream>

namespace mivora_tool {

namespace {

constexpr double kWidth = 960, kHeight = 660;
constexpr double kLeft = 84, kRight = kWidth - 36;
constexpr double kLegendY = 84;
constexpr double kMagTop = 104, kMagBottom = 404;
constexpr double kPhaseTop = 448, kPhaseBottom = 598;
// Below the peak, this many dB are worth showing; deeper stop bands are cut off.
constexpr double kDepthShown = 110.0;
const char* const kColours[] = {"#2b6cb0", "#c53030", "#2f855a", "#b7791f", "#6b46c1", "#0987a0", "#97266d"};

std::string num(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.2f", v);
    return buf;
}

// A value label with a real minus sign.
std::string signedLabel(double v) {
    const std::string s = shortNumber(std::fabs(v) < 1e-12 ? 0.0 : v);
    return s[0] == '-' ? "\u2212" + s.substr(1) : s;
}

std::string frequencyLabel(double f) {
    if (f >= 1e6) return shortNumber(f / 1e6) + "M";
    if (f >= 1e3) return shortNumber(f / 1e3) + "k";
    return shortNumber(f);
}

struct Axis {
    double lo, hi, top, bottom;
    double step;  // between labelled grid lines
    double y(double v) const { return bottom - (v - lo) / (hi - lo) * (bottom - top); }
};

struct FrequencyAxis {
    double lo, hi;
    double x(double f) const { return kLeft + std::log(f / lo) / std::log(hi / lo) * (kRight - kLeft); }
};

// Magnitude range: the data with a little headroom, on a round step.
Axis magnitudeAxis(const Plot& plot) {
    double lo = std::numeric_limits<double>::infinity(), hi = -lo;
    for (const PlotCurve& c : plot.curves)
        for (const ResponsePoint& p : c.points)
            if (std::isfinite(p.powerDb)) {
                lo = std::min(lo, p.powerDb);
                hi = std::max(hi, p.powerDb);
            }
    if (!(lo <= hi)) lo = hi = 0.0;
    lo = std::max(lo, hi - kDepthShown);
    if (hi - lo < 12.0) {
        const double mid = (hi + lo) / 2.0;
        lo = mid - 6.0;
        hi = mid + 6.0;
    }
    const double span = hi - lo;
    hi += span * 0.05;
    lo -= span * 0.02;
    double step = 1.0;
    for (double s : {1.0, 2.0, 3.0, 5.0, 6.0, 10.0, 12.0, 20.0, 24.0, 30.0})
        if (span / s <= 10.0) {
            step = s;
            break;
        }
    return {std::floor(lo / step) * step, std::ceil(hi / step) * step, kMagTop, kMagBottom, step};
}

class Svg {
public:
    void line(double x1, double y1, double x2, double y2, const char* style) {
        out << "<line x1=\"" << num(x1) << "\" y1=\"" << num(y1) << "\" x2=\"" << num(x2) << "\" y2=\"" << num(y2)
            << "\" style=\"" << style << "\"/>\n";
    }
    void text(double x, double y, const std::string& s, const char* attrs) {
        out << "<text x=\"" << num(x) << "\" y=\"" << num(y) << "\" " << attrs << ">" << xmlEscaped(s) << "</text>\n";
    }
    std::ostringstream out;
};

void frequencyGrid(Svg& svg, const FrequencyAxis& fx, double top, double bottom, bool labels) {
    for (double decade = std::pow(10.0, std::floor(std::log10(fx.lo))); decade <= fx.hi; decade *= 10.0) {
        for (int m = 1; m <= 9; ++m) {
            const double f = decade * m;
            if (f < fx.lo * (1 - 1e-9) || f > fx.hi * (1 + 1e-9)) continue;
            const double x = fx.x(f);
            svg.line(x, top, x, bottom, m == 1 ? "stroke:#b8b8b8;stroke-width:1" : "stroke:#e6e6e6;stroke-width:1");
            if (labels && (m == 1 || m == 2 || m == 5))
                svg.text(x, bottom + 17, frequencyLabel(f), "text-anchor=\"middle\" class=\"tick\"");
        }
    }
}

void valueGrid(Svg& svg, const Axis& a, const std::vector<std::pair<double, std::string>>& ticks) {
    for (const auto& [v, label] : ticks) {
        const double y = a.y(v);
        const bool zero = std::fabs(v) < 1e-12;
        svg.line(kLeft, y, kRight, y, zero ? "stroke:#9a9a9a;stroke-width:1" : "stroke:#e0e0e0;stroke-width:1");
        svg.text(kLeft - 8, y + 4, label, "text-anchor=\"end\" class=\"tick\"");
    }
}

// One polyline per run of drawable points; a run ends at a value that is
// not finite or, for phase, at a wrap from +pi to -pi.
template <typename Value>
void curve(Svg& svg, const FrequencyAxis& fx, const Axis& a, const std::vector<ResponsePoint>& pts, Value value,
           bool breakOnWrap, const char* colour, const char* clip) {
    std::string run;
    double previous = 0.0;
    auto flush = [&] {
        if (!run.empty())
            svg.out << "<polyline clip-path=\"url(#" << clip << ")\" fill=\"none\" stroke=\"" << colour
                    << "\" stroke-width=\"2\" stroke-linejoin=\"round\" points=\"" << run << "\"/>\n";
        run.clear();
    };
    for (const ResponsePoint& p : pts) {
        const double v = value(p);
        if (!std::isfinite(v)) {
            flush();
            continue;
        }
        if (breakOnWrap && !run.empty() && std::fabs(v - previous) > kPi) flush();
        run += (run.empty() ? "" : " ") + num(fx.x(p.freq)) + "," + num(a.y(v));
        previous = v;
    }
    flush();
}

void panelFrame(Svg& svg, double top, double bottom, const char* clipId, const std::string& axisTitle) {
    svg.out << "<clipPath id=\"" << clipId << "\"><rect x=\"" << num(kLeft) << "\" y=\"" << num(top) << "\" width=\""
            << num(kRight - kLeft) << "\" height=\"" << num(bottom - top) << "\"/></clipPath>\n";
    svg.out << "<rect x=\"" << num(kLeft) << "\" y=\"" << num(top) << "\" width=\"" << num(kRight - kLeft)
            << "\" height=\"" << num(bottom - top) << "\" fill=\"none\" stroke=\"#555\" stroke-width=\"1\"/>\n";
    const double mid = (top + bottom) / 2;
    svg.out << "<text transform=\"translate(26 " << num(mid) << ") rotate(-90)\" text-anchor=\"middle\" class=\"axis\">"
            << xmlEscaped(axisTitle) << "</text>\n";
}

void legend(Svg& svg, const Plot& plot) {
    if (plot.curves.size() < 2) return;
    double x = kLeft;
    for (std::size_t i = 0; i < plot.curves.size(); ++i) {
        const char* colour = kColours[i % std::size(kColours)];
        svg.out << "<line x1=\"" << num(x) << "\" y1=\"" << num(kLegendY - 4) << "\" x2=\"" << num(x + 22)
                << "\" y2=\"" << num(kLegendY - 4) << "\" stroke=\"" << colour << "\" stroke-width=\"3\"/>\n";
        svg.text(x + 28, kLegendY, plot.curves[i].legend, "class=\"legend\"");
        x += 44 + 7.2 * static_cast<double>(plot.curves[i].legend.size());
    }
}

}  // namespace

std::string renderSvg(const Plot& plot) {
    Svg svg;
    svg.out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kWidth << "\" height=\"" << kHeight
            << "\" viewBox=\"0 0 " << kWidth << " " << kHeight << "\">\n"
            << "<title>" << xmlEscaped(plot.title) << "</title>\n"
            << "<style>text{font-family:'DejaVu Sans',Helvetica,Arial,sans-serif;fill:#222}"
               ".title{font-size:19px;font-weight:bold}.sub{font-size:13px;fill:#555}.tick{font-size:12px;fill:#444}"
               ".axis{font-size:13px}.legend{font-size:12.5px}.note{font-size:11.5px;fill:#666}</style>\n"
            << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
    svg.text(kLeft, 34, plot.title, "class=\"title\"");
    svg.text(kLeft, 56, plot.subtitle, "class=\"sub\"");
    legend(svg, plot);

    double fLo = std::numeric_limits<double>::infinity(), fHi = 0.0;
    for (const PlotCurve& c : plot.curves)
        if (!c.points.empty()) {
            fLo = std::min(fLo, c.points.front().freq);
            fHi = std::max(fHi, c.points.back().freq);
        }
    if (!(fLo < fHi)) fLo = 1.0, fHi = 10.0;
    const FrequencyAxis fx{fLo, fHi};

    const Axis mag = magnitudeAxis(plot);
    std::vector<std::pair<double, std::string>> magTicks;
    for (double v = mag.lo; v <= mag.hi + 1e-9; v += mag.step) magTicks.emplace_back(v, signedLabel(v));
    const Axis phase{-kPi, kPi, kPhaseTop, kPhaseBottom, kPi / 2};
    const std::vector<std::pair<double, std::string>> phaseTicks = {
        {-kPi, "\u2212\u03c0"}, {-kPi / 2, "\u2212\u03c0/2"}, {0.0, "0"}, {kPi / 2, "\u03c0/2"}, {kPi, "\u03c0"}};

    frequencyGrid(svg, fx, kMagTop, kMagBottom, true);
    valueGrid(svg, mag, magTicks);
    frequencyGrid(svg, fx, kPhaseTop, kPhaseBottom, true);
    valueGrid(svg, phase, phaseTicks);
    panelFrame(svg, kMagTop, kMagBottom, "mag", "power (dB)");
    panelFrame(svg, kPhaseTop, kPhaseBottom, "phase", "phase (rad)");

    for (std::size_t i = 0; i < plot.curves.size(); ++i) {
        const char* colour = kColours[i % std::size(kColours)];
        const auto& pts = plot.curves[i].points;
        curve(svg, fx, mag, pts, [](const ResponsePoint& p) { return p.powerDb; }, false, colour, "mag");
        curve(svg, fx, phase, pts, [](const ResponsePoint& p) { return p.phaseRad; }, true, colour, "phase");
    }

    svg.text((kLeft + kRight) / 2, kPhaseBottom + 38, "frequency (Hz)", "text-anchor=\"middle\" class=\"axis\"");
    if (!plot.note.empty()) svg.text(kLeft, kHeight - 8, plot.note, "class=\"note\"");
    svg.out << "</svg>\n";
    return svg.out.str();
}

}  // namespace mivora_tool
