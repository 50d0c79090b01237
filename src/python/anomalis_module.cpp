#include <pybind11/pybind11.h>

#include "core/threads.h"
#include "core/version.h"
#include "python/body_object.h"
#include "python/forward_binding.h"
#include "python/survey_binding.h"
#include "python/told.h"
#include "python/workspace_binding.h"

namespace {

constexpr const char* module_doc =
    R"(Magnetic and gravity anomalies along a survey profile, explained by simple bodies.

`forward` gives what bodies show at stations; a `Workspace` is a line with its readings and its model: read or
made of arrays, found, fitted, and asked how sure it is. Names are those of the program, with units in their
docstrings: m, degrees, nT, mGal, micro SI, g/cc.

Long work releases the lock of the interpreter and takes all cores (see `limit_threads`). Ctrl+C ends it within
a moment. Functions may be called from several threads; one Workspace serves one thread at a time and says so.

>>> import anomalis
>>> anomalis.__version__.count(".")
2
)";

}  // namespace

PYBIND11_MODULE(anomalis, module) {
    module.doc() = module_doc;
    module.attr("__version__") = std::string(anomalis::application_version());
    anomalis::python::define_errors(module);
    anomalis::python::define_body(module);
    anomalis::python::define_forward(module);
    anomalis::python::WorkspaceClass workspace = anomalis::python::define_workspace(module);
    anomalis::python::define_line(workspace);
    anomalis::python::define_steps(module, workspace);
    anomalis::python::define_surveys(module);
    module.def("thread_count", &anomalis::thread_count, "How many cores long work takes.");
    module.def(
        "limit_threads",
        [](int most) {
            if (most < 0) throw pybind11::value_error("most must be 0 or more");
            anomalis::limit_threads(most);
        },
        pybind11::arg("most"),
        "From now on at most so many cores, 0 for all there are. Results do not hang on it.");
}
