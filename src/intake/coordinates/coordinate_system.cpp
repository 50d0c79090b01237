#include "intake/coordinates/coordinate_system.h"

#include <cmath>
#include <map>
#include <mutex>
#include <optional>
#include <proj.h>
#include <string_view>

#include "core/failure.h"
#include "core/numbers.h"
#include "intake/coordinates/proj_library.h"
#include "intake/coordinates/proj_objects.h"
#include "intake/coordinates/system_names.h"

namespace anomalis::intake {

namespace {

/// Metres a unit of the first axis. Raises Fault for axes that run against east and north.
double metres_per_unit(pj_ctx* context, const PJconsts* system) {
    const ProjObject axes(ANOMALIS_PROJ(proj_crs_get_coordinate_system)(context, system));
    double metres = 1;
    for (int axis = 0; axis < 2; ++axis) {
        const char* direction = nullptr;
        if (!ANOMALIS_PROJ(proj_cs_get_axis_info)(context, axes.get(), axis, nullptr, nullptr, &direction,
                                                  &metres, nullptr, nullptr, nullptr))
            continue;
        const std::string_view way = direction ? direction : "";
        if (way == "south" || way == "west")
            throw Fault("The axes of " + system_name(system) +
                        " run to the south and west, which is not provided for. Give coordinates to the east "
                        "and north");
    }
    return metres;
}

/// Into -180 to below 180 degrees.
double wrapped(double longitude) {
    return longitude - 360 * std::floor((longitude + 180) / 360);
}

int zone_number(double longitude, double latitude) {
    // Norway and Svalbard have zones of their own (NGA.STND.0037).
    if (latitude >= 56 && latitude < 64 && longitude >= 3 && longitude < 12) return 32;
    if (latitude >= 72 && longitude >= 0 && longitude < 42)
        return longitude < 9 ? 31 : longitude < 21 ? 33 : longitude < 33 ? 35 : 37;
    return static_cast<int>(std::floor((longitude + 180) / 6)) + 1;
}

CoordinateSystem looked_up(const std::string& text) {
    const ProjContext context = proj_context();
    const ProjObject object = proj_system(context.get(), text);
    CoordinateSystem system;
    system.code = system_code(object.get());
    if (system.code.empty()) system.code = text;
    system.name = system_name(object.get());
    system.geographic = is_geographic(object.get());
    if (!system.geographic) system.metres_per_unit = metres_per_unit(context.get(), object.get());
    return system;
}

/// What was asked for before: each line of a survey asks for the same, and the dataset takes milliseconds.
class KnownSystems {
  public:
    std::optional<CoordinateSystem> find(const std::string& text) {
        const std::lock_guard lock(mutex_);
        const auto found = systems_.find(text);
        return found == systems_.end() ? std::nullopt : std::optional(found->second);
    }
    void add(const std::string& text, const CoordinateSystem& system) {
        constexpr std::size_t most = 256;
        const std::lock_guard lock(mutex_);
        if (systems_.size() < most) systems_.emplace(text, system);
    }

  private:
    std::mutex mutex_;
    std::map<std::string, CoordinateSystem> systems_;
};

}  // namespace

CoordinateSystem find_coordinate_system(const std::string& text) {
    static KnownSystems known;
    if (auto system = known.find(text)) return *system;
    CoordinateSystem system = looked_up(text);
    known.add(text, system);
    return system;
}

std::string coordinate_system_wkt(const std::string& text) {
    const ProjContext context = proj_context();
    const ProjObject object = proj_system(context.get(), text);
    const char* wkt = ANOMALIS_PROJ(proj_as_wkt)(context.get(), object.get(), PJ_WKT1_GDAL, nullptr);
    if (!wkt) throw Fault("The coordinate system " + system_name(object.get()) + " cannot be written down");
    return wkt;
}

std::vector<CoordinateSystem> coordinate_systems_like(const std::string& text, std::size_t most) {
    const NameSearch search = search_names(text, all_system_names(), most);
    std::vector<CoordinateSystem> systems;
    if (search.found) systems.push_back(find_coordinate_system(search.found->code));
    for (const SystemName& system : search.near) systems.push_back(find_coordinate_system(system.code));
    return systems;
}

std::string utm_zone_of(double longitude, double latitude) {
    if (!(latitude >= -80 && latitude <= 84))
        throw Fault("UTM zones reach from 80 S to 84 N; latitude " + shortest_text(latitude) +
                    " lies outside. Choose a polar system");
    if (!(longitude >= -180 && longitude <= 360))
        throw Fault("Longitude " + shortest_text(longitude) + " must be -180 to 360 degrees");
    constexpr int north = 32600, south = 32700;  // EPSG numbers of WGS 84 / UTM, less the zone
    return "EPSG:" +
           std::to_string((latitude < 0 ? south : north) + zone_number(wrapped(longitude), latitude));
}

}  // namespace anomalis::intake
