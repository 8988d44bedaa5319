// The docstrings are the comments of include/mivora/IirProcess.h, turned
// into C++ strings at build time (python/tools/bind_from_header.py), together
// with the bindings of every operation that takes and returns plain numbers.
#ifndef MIVORA_PY_HEADER_DOCS_HPP
#define MIVORA_PY_HEADER_DOCS_HPP

#include <mivora/IirProcess.h>
#include <pybind11/pybind11.h>

namespace mivora_py {

namespace py = pybind11;
using Mivora::IirProcess;

namespace docs {
struct Entry {
    const char* name;
    int overload;  // 0 for the first declaration of the name, 1 for the next
    const char* text;
};
// The comment of the overload-th declaration of name in the header. Throws
// (so importing the module fails loudly) when the header has no such entry.
const char* operation(const char* name, int overload = 0);
}  // namespace docs

// Sets the class docstring and binds every operation of the header whose
// arguments and result are plain numbers, under its C++ name.
void bindHeaderOperations(py::class_<IirProcess>& cls);

}  // namespace mivora_py

#endif  // MIVORA_PY_HEADER_DOCS_HPP
