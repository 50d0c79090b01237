#include "python/told.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include "core/failure.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

/// Types of the module; they live as long as the interpreter.
struct ErrorTypes {
    PyObject* error = nullptr;
    PyObject* file_error = nullptr;
    PyObject* warning = nullptr;
};

ErrorTypes& types() {
    static ErrorTypes all;
    return all;
}

PyObject* new_type(py::module_& module, const char* name, const char* doc, const py::object& bases) {
    const std::string full = std::string("anomalis.") + name;
    PyObject* type = PyErr_NewExceptionWithDoc(full.c_str(), doc, bases.ptr(), nullptr);
    if (!type) throw py::error_already_set();
    module.add_object(name, py::reinterpret_borrow<py::object>(type));
    return type;
}

void translate(std::exception_ptr raised) {
    try {
        if (raised) std::rethrow_exception(raised);
    } catch (const FileFault& fault) {
        PyErr_SetString(types().file_error, fault.what());
    } catch (const FileTrouble& trouble) {
        PyErr_SetString(types().file_error, trouble.what());
    } catch (const Fault& fault) {
        PyErr_SetString(types().error, fault.what());
    } catch (const Stopped&) {
        PyErr_SetString(types().error, "the calculation was stopped");
    }
}

[[noreturn]] void raise_os_error(int number, const std::string& path) {
    errno = number;
    PyErr_SetFromErrnoWithFilename(PyExc_OSError, path.c_str());
    throw py::error_already_set();
}

}  // namespace

void define_errors(py::module_& module) {
    types().error =
        new_type(module, "Error", "What the program cannot do, in its own words: what, where and what to do.",
                 py::reinterpret_borrow<py::object>(PyExc_Exception));
    types().file_error =
        new_type(module, "FileError", "A file that cannot be read or written; an OSError as well.",
                 py::make_tuple(py::handle(types().error), py::handle(PyExc_OSError)));
    types().warning = new_type(
        module, "AnomalisWarning",
        "Something was done, but in doubt: a number that can hardly be meant, a body that counts as zero.",
        py::reinterpret_borrow<py::object>(PyExc_UserWarning));
    py::register_exception_translator(translate);
}

void require_readable(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) raise_os_error(EISDIR, path);
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);  // NOLINT(cppcoreguidelines-pro-type-vararg)
    if (file < 0) raise_os_error(errno, path);
    ::close(file);
}

void require_folder_of(const std::string& path) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (!folder.empty() && !std::filesystem::is_directory(folder, error))
        raise_os_error(std::filesystem::exists(folder, error) ? ENOTDIR : ENOENT, folder.string());
    if (std::filesystem::is_directory(path, error)) raise_os_error(EISDIR, path);
}

void ToldPrompts::begin() {
    static_cast<RecordingPrompts&>(*this) = RecordingPrompts();
    told_.clear();
}

void ToldPrompts::show_text(const std::string& text, Severity severity) {
    RecordingPrompts::show_text(text, severity);
    told_.emplace_back(text, severity);
}

std::string ToldPrompts::texts(Severity severity) const {
    std::string all;
    for (const auto& [text, how] : told_)
        if (how == severity) all += (all.empty() ? "" : "\n") + text;
    return all;
}

py::list texts_of(const ToldPrompts::Told& told) {
    py::list list;
    for (const auto& [text, severity] : told) list.append(text);
    return list;
}

void warn_of(const ToldPrompts::Told& told) {
    for (const auto& [text, severity] : told)
        if (severity != Severity::remark && PyErr_WarnEx(types().warning, text.c_str(), 1) != 0)
            throw py::error_already_set();
}

void warn_of(const Faults& faults) {
    ToldPrompts::Told told;
    for (const Faults::Entry& entry : faults.entries())
        told.emplace_back(counted_text(entry), entry.severity);
    warn_of(told);
}

bool Watch::stop() {
    constexpr std::chrono::milliseconds pause(50);
    if (failure_) return true;
    const Clock::time_point now = Clock::now();
    if (now - asked_ < pause) return false;
    const py::gil_scoped_acquire lock;
    if (PyErr_CheckSignals() != 0) failure_ = std::make_exception_ptr(py::error_already_set());
    asked_ = Clock::now();
    return failure_ != nullptr;
}

void Watch::tell(const std::function<py::tuple()>& arguments) {
    if (failure_ || progress_.is_none()) return;
    const py::gil_scoped_acquire lock;
    try {
        progress_(*arguments());
    } catch (const py::error_already_set&) {
        failure_ = std::current_exception();
    }
}

void Watch::raise_if_left() {
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

}  // namespace anomalis::python
