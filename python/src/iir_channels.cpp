#include "iir_channels.hpp"

#include <mivora/IirChannels.h>
#include <pybind11/numpy.h>

#include <algorithm>
#include <climits>
#include <string>

#include "sample_arrays.hpp"

namespace mivora_py {

namespace py = pybind11;
using Mivora::IirChannels;

namespace {

enum class Layout { planar, interleaved };

Layout layoutOf(const std::string& name) {
    if (name == "planar") return Layout::planar;
    if (name == "interleaved") return Layout::interleaved;
    throw py::value_error("layout must be 'planar' (channels, samples) or 'interleaved' (samples, channels), got '" +
                          name + "'");
}

// One channel per row (planar) or per column (interleaved), one per
// processed channel of the object.
void requireShape(const py::array& a, const IirChannels& ch, Layout layout) {
    const char* shape = layout == Layout::planar ? "(channels, samples)" : "(samples, channels)";
    if (a.ndim() != 2)
        throw py::value_error(std::string("x must be 2-D, ") + shape + ", got " + std::to_string(a.ndim()) +
                              " dimensions");
    const py::ssize_t channels = a.shape(layout == Layout::planar ? 0 : 1);
    if (channels != ch.getChannels())
        throw py::value_error(std::string("x of shape ") + shape + " has " + std::to_string(channels) +
                              " channels; the object processes " + std::to_string(ch.getChannels()));
}

std::size_t framesOf(const py::array& a, Layout layout) {
    return static_cast<std::size_t>(a.shape(layout == Layout::planar ? 1 : 0));
}

// Runs every processed channel with the GIL released, in blocks small
// enough that the library's unsigned counts (frames, and frames times
// channels when interleaved) cannot wrap; the state carries across blocks.
void run(IirChannels& ch, Layout layout, const float* in, float* out, std::size_t frames) {
    py::gil_scoped_release noGil;
    const auto channels = static_cast<std::size_t>(ch.getChannels());
    const float* from[IirChannels::maxChannels];
    float* to[IirChannels::maxChannels];
    for (std::size_t done = 0; done < frames;) {
        const auto block = static_cast<unsigned>(std::min<std::size_t>(frames - done, UINT_MAX / IirChannels::maxChannels));
        if (layout == Layout::interleaved) {
            ch.processInterleaved(in + done * channels, out + done * channels, block);
        } else {
            for (std::size_t c = 0; c < channels; ++c) {
                from[c] = in + c * frames + done;
                to[c] = out + c * frames + done;
            }
            ch.processPlanar(from, to, block);
        }
        done += block;
    }
}

// A C-contiguous float32 array is read where it lies; float32 of another
// layout and float64 are converted by numpy into the new output array.
py::array_t<float> process(IirChannels& ch, const py::handle& x, const std::string& layoutName) {
    const Layout layout = layoutOf(layoutName);
    const py::array a = py::array::ensure(x);
    if (!a) throw py::type_error("x must be an array of samples");
    if (!isFloat32(a) && !isFloat64(a))
        throw py::type_error("x must have dtype float32 or float64, got " + dtypeName(a));
    requireShape(a, ch, layout);
    const bool borrowed = isFloat32(a) && (a.flags() & py::array::c_style);
    py::array_t<float> y({a.shape(0), a.shape(1)});
    if (!borrowed) y.attr("__setitem__")(py::ellipsis(), a);
    run(ch, layout, borrowed ? static_cast<const float*>(a.data()) : y.data(), y.mutable_data(), framesOf(a, layout));
    return y;
}

void processInPlace(IirChannels& ch, const py::handle& x, const std::string& layoutName) {
    const Layout layout = layoutOf(layoutName);
    if (!py::isinstance<py::array>(x))
        throw py::type_error("x must be a numpy.ndarray of float32, got " + py::str(py::type::of(x)).cast<std::string>());
    auto a = py::reinterpret_borrow<py::array>(x);
    if (!isFloat32(a))
        throw py::type_error("x must have dtype float32, got " + dtypeName(a) + "; convert with x.astype(numpy.float32)");
    requireShape(a, ch, layout);
    if (!(a.flags() & py::array::c_style))
        throw py::value_error("x must be C-contiguous; use numpy.ascontiguousarray(x)");
    if (!a.writeable()) throw py::value_error("x is read-only");
    float* data = static_cast<float*>(a.mutable_data());
    run(ch, layout, data, data, framesOf(a, layout));
}

const char* const layoutDoc =
    "layout='planar': x has shape (channels, samples), one row per channel;\n"
    "layout='interleaved': shape (samples, channels), one row per frame.\n"
    "The channel count must equal getChannels(); other shapes raise ValueError.";

}  // namespace

void bindIirChannels(py::module_& m) {
    py::class_<IirChannels> cls(m, "IirChannels",
                                "Up to maxChannels IirProcess filters run side by side. Channel c's output\n"
                                "and state are bit for bit those of channel(c) filtering channel c alone.\n"
                                "Design each channel through channel(c) with the IirProcess operations.");
    cls.attr("__module__") = "mivora";
    cls.attr("maxChannels") = IirChannels::maxChannels;
    cls.def(py::init<int>(),
            "channels (clamped into [0, maxChannels]) filters, each as IirProcess():\n"
            "order 2, silent until designed.",
            py::arg("channels"));
    cls.def("setChannels", &IirChannels::setChannels,
            "Number of channels processed, clamped into [0, maxChannels]; every\n"
            "filter keeps its design and state, processed or not.",
            py::arg("channels"));
    cls.def("getChannels", &IirChannels::getChannels, "Number of channels processed.");
    cls.def_property("channels", &IirChannels::getChannels, &IirChannels::setChannels,
                     "Number of channels processed (getChannels / setChannels).");
    cls.def("channel", py::overload_cast<int>(&IirChannels::channel), py::return_value_policy::reference_internal,
            "The IirProcess of channel c (clamped into [0, maxChannels - 1]), to design,\n"
            "reset or query; it lives inside this object and keeps it alive.",
            py::arg("c"));
    cls.def("process", &process,
            std::string("Filters the 2-D array x and returns a new float32 array of its shape; the\n"
                        "state carries on from the previous call. C-contiguous float32 is read where\n"
                        "it lies; float64 is rounded to float32 first; other dtypes raise TypeError.\n")
                .append(layoutDoc)
                .c_str(),
            py::arg("x"), py::arg("layout") = "planar");
    cls.def("process_inplace", &processInPlace,
            std::string("Filters the C-contiguous, writable float32 array x in place.\n").append(layoutDoc).c_str(),
            py::arg("x"), py::arg("layout") = "planar");
    cls.def("__repr__", [](const IirChannels& ch) { return "IirChannels(channels=" + std::to_string(ch.getChannels()) + ")"; });
}

}  // namespace mivora_py
