#pragma once

#include <memory>
#include <optional>
#include <pybind11/numpy.h>
#include <span>
#include <string>
#include <utility>
#include <vector>

// Numbers of numpy and of C++ in one memory.
namespace anomalis::python {

/// One number a station, read where numpy has it: float64, elements one after the other. Other real numbers,
/// other strides and lists are copied first; anything else raises TypeError, more or fewer dimensions
/// ValueError, with `name` in the text.
class InputArray {
  public:
    InputArray(pybind11::handle values, const char* name);
    std::span<const double> span() const { return {array_.data(), static_cast<std::size_t>(array_.size())}; }
    std::size_t size() const { return static_cast<std::size_t>(array_.size()); }

  private:
    pybind11::array_t<double, pybind11::array::c_style> array_;
};

/// Raises ValueError unless `values` is as long as the stations are many.
void require_stations(const InputArray& values, const char* name, std::size_t stations);

/// An array that owns the memory of a vector; nothing is copied.
template <class T>
pybind11::array_t<T> owning_array(std::vector<T>&& values, std::vector<pybind11::ssize_t> shape = {}) {
    auto held = std::make_unique<std::vector<T>>(std::move(values));
    if (shape.empty()) shape = {static_cast<pybind11::ssize_t>(held->size())};
    T* const data = held->data();
    const pybind11::capsule owner(held.release(), [](void* kept) {
        delete static_cast<std::vector<T>*>(kept);  // NOLINT(cppcoreguidelines-owning-memory)
    });
    return pybind11::array_t<T>(std::move(shape), data, owner);
}

/// A read-only view of memory that `owner` holds, and that lives as long as the view.
template <class T, class Owner>
pybind11::array_t<T> read_only_view(std::span<const T> values, std::shared_ptr<Owner> owner) {
    auto held = std::make_unique<std::shared_ptr<Owner>>(std::move(owner));
    const pybind11::capsule base(held.release(), [](void* kept) {
        delete static_cast<std::shared_ptr<Owner>*>(kept);  // NOLINT(cppcoreguidelines-owning-memory)
    });
    pybind11::array_t<T> view({static_cast<pybind11::ssize_t>(values.size())}, values.data(), base);
    view.attr("setflags")(pybind11::arg("write") = false);
    return view;
}

}  // namespace anomalis::python
