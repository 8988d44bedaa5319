// NumPy arrays of samples as the library's processing wants them: 1-D,
// float32, contiguous. Anything else is converted (when the caller gets a new
// array anyway) or refused with a TypeError or ValueError naming the problem.
#ifndef MIVORA_PY_SAMPLE_ARRAYS_HPP
#define MIVORA_PY_SAMPLE_ARRAYS_HPP

#include <mivora/IirProcess.h>
#include <pybind11/numpy.h>

#include <cstddef>
#include <string>

namespace mivora_py {

namespace py = pybind11;

// The dtype as numpy prints it, for error messages.
std::string dtypeName(const py::array& a);
// Native-endian float32 / float64 dtypes: the ones read without conversion
// or converted by numpy's own rounding.
bool isFloat32(const py::array& a);
bool isFloat64(const py::array& a);

struct Samples {
    float* data;
    std::size_t size;
};

// The memory of an array the library reads or writes in place, never a copy:
// a 1-D, C-contiguous, native float32 ndarray (writable when asked).
Samples borrowSamples(const py::handle& array, const char* role, bool writable);

// x as a new 1-D float32 array: float32 or float64 input of any layout,
// float64 rounded to nearest float32 (as x.astype(numpy.float32)).
py::array_t<float> float32Copy(const py::handle& x);

// Runs count samples through the filter with the GIL released, in blocks
// the library's unsigned count can hold; the state carries across blocks.
void processSamples(Mivora::IirProcess& filter, const float* in, float* out, std::size_t count);

}  // namespace mivora_py

#endif  // MIVORA_PY_SAMPLE_ARRAYS_HPP
