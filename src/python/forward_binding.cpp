#include "python/forward_binding.h"

#include <pybind11/stl.h>

#include "python/arrays.h"
#include "python/body_object.h"
#include "python/names.h"
#include "python/station_forward.h"
#include "python/told.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

constexpr const char* forward_doc = R"(What bodies give at stations, in double precision.

bodies: Body objects. east, north, elevation: arrays of n numbers, m; elevation, that of the sensors, may be
one number for all. field: (intensity nT, inclination, declination in degrees, down and east positive), needed
for magnetics. formulas: "exact" or "classic". channel: "mag" (nT), "grav" (mGal) or "both".

Returns a float64 array of n numbers, of "both" a pair of them (mag, grav). float64 arrays whose elements lie
one after the other are read where they stand; other real numbers, strided views and lists are copied first.
The classic formulas, which calculate in single precision, read a copy too.

A body stands at its `distance` along the line of the stations, counted as a workspace counts it: straight
from the first to the last one, turned so that it runs to the east, or to the north where it is more
north-south. Stations that are no such line (a grid, a point) need line=(east, north, bearing): the place of
distance 0, m, and whither distances rise, degrees clockwise from north; the exact formulas alone know it.

The lock of the interpreter is released meanwhile; leave the arrays alone until it is done. Several threads
may call at once. Doubts, and bodies that fail and so count as zero, are told as AnomalisWarning.

>>> import anomalis, numpy
>>> east = numpy.linspace(0.0, 1000.0, 5)
>>> dyke = anomalis.Body("thin_sheet", distance=500, top=-50, strike=0, dip=90, width=10,
...                      depth_extent=0, length=0, susc=30000)
>>> field = (50000, 90, 0)
>>> anomalis.forward([dyke], east, 0 * east, 0.0, field=field).argmax()
2
>>> anomalis.forward([dyke], east, 0 * east, 0.0, channel="grav").shape
(5,)
)";

/// Ctrl+C while stations are calculated.
class WatchPacer : public TurnPacer {
  public:
    explicit WatchPacer(Watch& watch) : watch_(watch) {}

  protected:
    bool turn(double) override { return watch_.stop(); }

  private:
    Watch& watch_;
};

std::vector<double> same_for_all(double value, std::size_t count) {
    return std::vector<double>(count, value);
}

ForwardRequest request_of(const py::iterable& bodies, const py::object& field, const std::string& formulas,
                          const std::string& channel, const py::object& line) {
    ForwardRequest request;
    request.bodies = bodies_of(bodies);
    request.formulas = formulas_of(formulas);
    if (channel != "mag" && channel != "grav" && channel != "both")
        throw py::value_error("channel must be 'mag', 'grav' or 'both': " + channel);
    request.mag = channel != "grav";
    request.grav = channel != "mag";
    if (!field.is_none()) request.field = field_of(field);
    if (field.is_none() && request.mag)
        throw py::value_error("magnetics need field=(nT, inclination, declination)");
    if (!line.is_none()) {
        const auto [east, north, bearing] = three_numbers(line, "line", "(east, north, bearing)");
        request.line = PlacedLine{east, north, bearing};
    }
    return request;
}

py::object forward(const py::iterable& bodies, const py::object& east, const py::object& north,
                   const py::object& elevation, const py::object& field, const std::string& formulas,
                   const std::string& channel, const py::object& line) {
    const ForwardRequest request = request_of(bodies, field, formulas, channel, line);
    const InputArray easts(east, "east"), norths(north, "north");
    require_stations(norths, "north", easts.size());
    std::optional<InputArray> elevations;
    std::vector<double> level;
    if (py::isinstance<py::float_>(elevation) || py::isinstance<py::int_>(elevation)) {
        level = same_for_all(elevation.cast<double>(), easts.size());
    } else {
        elevations.emplace(elevation, "elevation");
        require_stations(*elevations, "elevation", easts.size());
    }
    const StationArrays stations{easts.span(), norths.span(),
                                 elevations ? elevations->span() : std::span<const double>(level)};
    Watch watch;
    ForwardResult result;
    std::exception_ptr failure;
    {
        const py::gil_scoped_release free;
        WatchPacer pacer(watch);
        try {
            result = forward_at(request, stations, pacer);
        } catch (...) {
            failure = std::current_exception();
        }
    }
    watch.raise_if_left();
    if (failure) std::rethrow_exception(failure);
    warn_of(result.faults);
    if (channel == "mag") return owning_array(std::move(result.mag));
    if (channel == "grav") return owning_array(std::move(result.grav));
    return py::make_tuple(owning_array(std::move(result.mag)), owning_array(std::move(result.grav)));
}

}  // namespace

void define_forward(py::module_& module) {
    module.def("forward", &forward, py::arg("bodies"), py::arg("east"), py::arg("north"),
               py::arg("elevation"), py::kw_only(), py::arg("field") = py::none(),
               py::arg("formulas") = "exact", py::arg("channel") = "mag", py::arg("line") = py::none(),
               forward_doc);
}

}  // namespace anomalis::python
