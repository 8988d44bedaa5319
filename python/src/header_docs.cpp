#include "header_docs.hpp"

#include <cstring>
#include <stdexcept>
#include <string>

namespace mivora_py {

#include "header_bindings.inc"

namespace docs {
const char* operation(const char* name, int overload) {
    for (const Entry& e : kEntries)
        if (e.overload == overload && std::strcmp(e.name, name) == 0) return e.text;
    throw std::logic_error(std::string("no comment in IirProcess.h for ") + name);
}
}  // namespace docs

void bindHeaderOperations(py::class_<IirProcess>& cls) {
    cls.doc() = docs::kOverview;
    bindPlainOperations(cls);
}

}  // namespace mivora_py
