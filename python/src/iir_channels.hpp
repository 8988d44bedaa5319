// mivora.IirChannels: the multichannel filter over 2-D NumPy arrays, one
// row per channel (planar) or one row per frame (interleaved).
#ifndef MIVORA_PY_IIR_CHANNELS_HPP
#define MIVORA_PY_IIR_CHANNELS_HPP

#include <pybind11/pybind11.h>

namespace mivora_py {

void bindIirChannels(pybind11::module_& m);

}  // namespace mivora_py

#endif  // MIVORA_PY_IIR_CHANNELS_HPP
