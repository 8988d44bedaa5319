// The mivora extension module: IirProcess with every public operation under
// its C++ name, plus the NumPy forms (process, sos, coef, state). A thin
// binding: every number comes from the C++ library.
#include <mivora/IirProcess.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "header_docs.hpp"
#include "iir_channels.hpp"
#include "sample_arrays.hpp"

namespace py = pybind11;
using Mivora::IirProcess;
using mivora_py::docs::operation;

namespace {

using Row = std::array<double, 5>;
static_assert(IirProcess::maxCoefCount >= 10, "runningRows reads getDelay's 10 values into the same buffer");

// The sections that run, in processing order, in the library's convention:
// b0 b1 b2 a1 a2 (feedback added), the first-order section as b0 b1 0 a1 0.
// Which ones run comes from the order split, as processing decides it.
std::vector<Row> runningRows(const IirProcess& f, bool state) {
    double v[IirProcess::maxCoefCount] = {};
    if (state) f.getDelay(v); else f.getCoef(v);
    const int sections = f.getEvenOrder() >= 2 ? f.getEvenOrder() / 2 : 0;
    std::vector<Row> rows;
    for (int k = 0; k < sections; ++k) {
        const double* s = v + (state ? 4 : 5) * k;
        rows.push_back(Row{s[0], s[1], s[2], s[3], state ? 0.0 : s[4]});
    }
    if (f.getOddOrder() != 0) {
        // getDelay keeps the first-order x1 y1 at 8; getCoef puts b0 b1 a1
        // right after the running sections.
        const double* s = state ? v + 8 : v + 5 * sections;
        rows.push_back(state ? Row{s[0], 0.0, s[1], 0.0, 0.0} : Row{s[0], s[1], 0.0, s[2], 0.0});
    }
    return rows;
}

py::array_t<double> toArray(const std::vector<Row>& rows, std::size_t width, bool sosRows) {
    py::array_t<double> out({rows.size(), width});
    auto o = out.mutable_unchecked<2>();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& r = rows[i];
        if (sosRows) {
            const double row[6] = {r[0], r[1], r[2], 1.0, -r[3], -r[4]};
            for (std::size_t j = 0; j < 6; ++j) o(i, j) = row[j];
        } else {
            for (std::size_t j = 0; j < width; ++j) o(i, j) = r[j];
        }
    }
    return out;
}

py::array_t<double> sos(const IirProcess& f) {
    std::vector<Row> rows = runningRows(f, false);
    // No section runs: the filter passes samples through, which scipy
    // writes as one identity row.
    if (rows.empty()) rows.push_back(Row{1.0, 0.0, 0.0, 0.0, 0.0});
    return toArray(rows, 6, true);
}

// getCoef writes a prefix of its buffer whose length depends on the order;
// two calls over different fillings show which entries it wrote.
py::array_t<double> getCoef(const IirProcess& f) {
    double a[IirProcess::maxCoefCount], b[IirProcess::maxCoefCount];
    std::fill(std::begin(a), std::end(a), 1.0);
    std::fill(std::begin(b), std::end(b), 2.0);
    f.getCoef(a);
    f.getCoef(b);
    std::size_t n = 0;
    while (n < IirProcess::maxCoefCount && std::memcmp(&a[n], &b[n], sizeof(double)) == 0) ++n;
    return py::array_t<double>(n, a);
}

py::array_t<double> getDelay(const IirProcess& f) {
    py::array_t<double> out(10);
    f.getDelay(out.mutable_data());
    return out;
}

void doProcess(IirProcess& f, const py::handle& in, const py::handle& out, std::optional<std::size_t> count) {
    const mivora_py::Samples src = mivora_py::borrowSamples(in, "in_", false);
    const mivora_py::Samples dst = mivora_py::borrowSamples(out, "out", true);
    const std::size_t n = count.value_or(src.size);
    if (n > src.size || n > dst.size)
        throw py::value_error("count " + std::to_string(n) + " exceeds the arrays (" + std::to_string(src.size) +
                              " and " + std::to_string(dst.size) + " samples)");
    if (src.data != dst.data && src.data < dst.data + n && dst.data < src.data + n)
        throw py::value_error("in_ and out overlap; pass the same array twice to filter in place");
    mivora_py::processSamples(f, src.data, dst.data, n);
}

py::array_t<float> process(IirProcess& f, const py::handle& x) {
    if (py::isinstance<py::array_t<float, 0>>(x) && (py::reinterpret_borrow<py::array>(x).flags() & py::array::c_style)) {
        const mivora_py::Samples in = mivora_py::borrowSamples(x, "x", false);
        py::array_t<float> out(in.size);
        mivora_py::processSamples(f, in.data, out.mutable_data(), in.size);
        return out;
    }
    py::array_t<float> y = mivora_py::float32Copy(x);
    mivora_py::processSamples(f, y.data(), y.mutable_data(), static_cast<std::size_t>(y.size()));
    return y;
}

void processInPlace(IirProcess& f, const py::handle& x) {
    const mivora_py::Samples s = mivora_py::borrowSamples(x, "x", true);
    mivora_py::processSamples(f, s.data, s.data, s.size);
}

template <class Transform, class... Args>
py::array_t<double> sectionOf(Transform t, Args... args) {
    py::array_t<double> out(5);
    t(args..., out.mutable_data());
    return out;
}

void bindArrayOperations(py::class_<IirProcess>& cls) {
    cls.def("getCoef", &getCoef, operation("getCoef"));
    cls.def("getDelay", &getDelay, operation("getDelay"));
    cls.def("doProcess", &doProcess, operation("doProcess"), py::arg("in_"), py::arg("out"),
            py::arg("count") = py::none());
    cls.def("power", py::vectorize([](IirProcess& f, double freq, double fs) { return f.power(freq, fs); }),
            operation("power"), py::arg("freq"), py::arg("fs"));
    cls.def("phase", py::vectorize([](IirProcess& f, double freq, double fs) { return f.phase(freq, fs); }),
            operation("phase"), py::arg("freq"), py::arg("fs"));
    cls.def("process", &process,
            "Filters the 1-D array x and returns a new float32 array; the state carries\n"
            "on from the previous call. float32 input is read where it lies; float64 is\n"
            "rounded to float32 first (as x.astype(numpy.float32)); other dtypes raise\n"
            "TypeError, other shapes ValueError.",
            py::arg("x"));
    cls.def("process_inplace", &processInPlace,
            "Filters the 1-D, contiguous, writable float32 array x in place (doProcess(x, x)).",
            py::arg("x"));
    cls.def("sos", &sos,
            "The running sections as an (n, 6) float64 array of scipy rows\n"
            "[b0 b1 b2 1 -a1 -a2], in processing order; the first-order section is\n"
            "[b0 b1 0 1 -a1 0]. With no section running, one identity row.\n"
            "Use with scipy.signal.sosfilt, sosfreqz, sos2zpk.");
    cls.def("coef", [](const IirProcess& f) { return toArray(runningRows(f, false), 5, false); },
            "The running sections as an (n, 5) float64 array in the library's own\n"
            "convention [b0 b1 b2 a1 a2] (feedback added); the first-order section\n"
            "is [b0 b1 0 a1 0]. n is 0 when no section runs.");
    cls.def("state", [](const IirProcess& f) { return toArray(runningRows(f, true), 4, false); },
            "The state of the running sections as an (n, 4) float64 array, rows\n"
            "[x1 x2 y1 y2] in the order of coef(); the first-order section is [x1 0 y1 0].");
}

void bindTransforms(py::class_<IirProcess>& cls) {
    cls.def_static("HpfCoefToZet", [](double lin, double cst) { return sectionOf(&IirProcess::HpfCoefToZet, lin, cst); },
                   operation("HpfCoefToZet"), py::arg("lin"), py::arg("cst"));
    cls.def_static("LpfCoefToZet", [](double lin, double cst) { return sectionOf(&IirProcess::LpfCoefToZet, lin, cst); },
                   operation("LpfCoefToZet"), py::arg("lin"), py::arg("cst"));
    cls.def_static("BpfCoefToZet", [](double lin, double cst) { return sectionOf(&IirProcess::BpfCoefToZet, lin, cst); },
                   operation("BpfCoefToZet"), py::arg("lin"), py::arg("cst"));
    cls.def_static("IChevHpfCoefToZet",
                   [](double lin, double cst, double zero) { return sectionOf(&IirProcess::IChevHpfCoefToZet, lin, cst, zero); },
                   operation("IChevHpfCoefToZet"), py::arg("lin"), py::arg("cst"), py::arg("zero"));
    cls.def_static("IChevLpfCoefToZet",
                   [](double lin, double cst, double zero) { return sectionOf(&IirProcess::IChevLpfCoefToZet, lin, cst, zero); },
                   operation("IChevLpfCoefToZet"), py::arg("lin"), py::arg("cst"), py::arg("zero"));
    cls.def_static("BefCoefToZet",
                   [](double lin, double cst, double zero) { return sectionOf(&IirProcess::BefCoefToZet, lin, cst, zero); },
                   operation("BefCoefToZet"), py::arg("lin"), py::arg("cst"), py::arg("zero"));
    cls.def_static("BpfCoefTrans",
                   [](double lin, double cst, double wLow, double wHigh) {
                       double lin1, cst1, lin2, cst2;
                       IirProcess::BpfCoefTrans(lin, cst, wLow, wHigh, &lin1, &cst1, &lin2, &cst2);
                       return py::make_tuple(lin1, cst1, lin2, cst2);
                   },
                   std::string(operation("BpfCoefTrans")).append("\n\nReturns (lin1, cst1, lin2, cst2).").c_str(),
                   py::arg("lin"), py::arg("cst"), py::arg("wLow"), py::arg("wHigh"));
    cls.def_static("BuboCoefTrans",
                   [](double wLow, double wHigh, double zero) {
                       double zeroHigh, zeroLow;
                       IirProcess::BuboCoefTrans(wLow, wHigh, zero, &zeroHigh, &zeroLow);
                       return py::make_tuple(zeroHigh, zeroLow);
                   },
                   std::string(operation("BuboCoefTrans")).append("\n\nReturns (zeroHigh, zeroLow).").c_str(),
                   py::arg("wLow"), py::arg("wHigh"), py::arg("zero"));
}

}  // namespace

PYBIND11_MODULE(_mivora, m) {
    m.doc() = "Mivora IIR filters: designs, processing and response of IirProcess; IirChannels.";
    m.attr("__version__") = MIVORA_VERSION;
    py::class_<IirProcess> cls(m, "IirProcess");
    cls.attr("__module__") = "mivora";  // where users import it from
    cls.def(py::init<>(), operation("IirProcess", 0));
    cls.def(py::init<int>(), operation("IirProcess", 2), py::arg("order"));
    cls.attr("maxOrder") = IirProcess::maxOrder;
    cls.attr("maxProtoOrder") = IirProcess::maxProtoOrder;
    cls.attr("maxCoefCount") = IirProcess::maxCoefCount;
    mivora_py::bindHeaderOperations(cls);
    bindArrayOperations(cls);
    bindTransforms(cls);
    cls.def("__repr__", [](const IirProcess& f) { return "IirProcess(order=" + std::to_string(f.getOrder()) + ")"; });
    mivora_py::bindIirChannels(m);
}
