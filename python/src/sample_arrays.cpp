#include "sample_arrays.hpp"

#include <algorithm>
#include <climits>
#include <string>

namespace mivora_py {

std::string dtypeName(const py::array& a) { return py::str(a.dtype()).cast<std::string>(); }

bool isFloat32(const py::array& a) { return py::isinstance<py::array_t<float, 0>>(a); }
bool isFloat64(const py::array& a) { return py::isinstance<py::array_t<double, 0>>(a); }

namespace {

void requireOneDimension(const py::array& a, const char* role) {
    if (a.ndim() != 1)
        throw py::value_error(std::string(role) + " must be 1-D (one channel), got " + std::to_string(a.ndim()) +
                              " dimensions");
}

}  // namespace

Samples borrowSamples(const py::handle& array, const char* role, bool writable) {
    if (!py::isinstance<py::array>(array))
        throw py::type_error(std::string(role) + " must be a numpy.ndarray of float32, got " +
                             py::str(py::type::of(array)).cast<std::string>());
    auto a = py::reinterpret_borrow<py::array>(array);
    if (!isFloat32(a))
        throw py::type_error(std::string(role) + " must have dtype float32, got " + dtypeName(a) +
                             "; convert with x.astype(numpy.float32)");
    requireOneDimension(a, role);
    if (!(a.flags() & py::array::c_style))
        throw py::value_error(std::string(role) + " must be contiguous; use numpy.ascontiguousarray(x)");
    if (writable && !a.writeable()) throw py::value_error(std::string(role) + " is read-only");
    return {static_cast<float*>(const_cast<void*>(a.data())), static_cast<std::size_t>(a.size())};
}

py::array_t<float> float32Copy(const py::handle& x) {
    auto a = py::array::ensure(x);
    if (!a) throw py::type_error("x must be an array of samples");
    if (!isFloat32(a) && !isFloat64(a))
        throw py::type_error("x must have dtype float32 or float64, got " + dtypeName(a));
    requireOneDimension(a, "x");
    auto copy = py::array_t<float>(a.size());
    // numpy does the rounding and the gathering of strided input.
    copy.attr("__setitem__")(py::ellipsis(), a);
    return copy;
}

void processSamples(Mivora::IirProcess& filter, const float* in, float* out, std::size_t count) {
    py::gil_scoped_release noGil;
    // doProcess reads in and writes out; it takes in as non-const only by
    // its signature.
    float* from = const_cast<float*>(in);
    while (count > 0) {
        auto block = static_cast<unsigned>(std::min<std::size_t>(count, UINT_MAX));
        filter.doProcess(from, out, block);
        from += block;
        out += block;
        count -= block;
    }
}

}  // namespace mivora_py
