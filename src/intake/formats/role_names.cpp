#include "intake/formats/role_names.h"

#include <algorithm>

#include "intake/formats/column_units.h"
#include "intake/formats/name_words.h"

namespace anomalis::intake {

namespace {

/// What is told of a quantity, and not the quantity itself.
bool is_about(const NameWords& name) {
    return name.has({"diff", "err",  "error", "std",  "stdev", "sd",      "sigma",   "accuracy",
                     "acc",  "dev",  "delta", "vel",  "speed", "heading", "quality", "qual",
                     "qc",   "flag", "type",  "sats", "lock",  "noise"}) ||
           name.holds({"diff", "error", "accuracy"});
}

int line_worth(const NameWords& name) {
    if (is_about(name) || name.has({"dir", "direction", "azimuth", "bearing", "date", "part"}) ||
        name.holds({"lineament", "baseline"}))
        return 0;
    if (name.holds({"flightline", "fltline", "linenumber", "lineno", "linenum", "linename", "lineid"}))
        return 92;
    if (name.has({"line", "lines"})) return 90;
    if (name.has({"profile", "traverse", "profil", "linie", "ligne", "linha", "linea"})) return 70;
    return name.has({"ln", "swath"}) ? 50 : 0;
}

int fiducial_worth(const NameWords& name) {
    if (is_about(name)) return 0;
    if (name.holds({"fiducial"})) return 90;
    if (name.has({"fid", "fids", "fidcount"})) return 85;
    if (name.has({"station", "stn", "point", "counter", "record", "sample"})) return 40;
    return name.has({"stationcode", "id"}) ? 20 : 0;
}

int date_worth(const NameWords& name) {
    if (name.holds({"update", "dateline"})) return 0;
    if (name.has({"date", "yyyymmdd", "datum", "fecha", "decyear"}) || name.holds({"decimalyear"})) return 90;
    if (name.holds({"date"})) return 80;
    return name.has({"year"}) ? 50 : 0;
}

/// A datum of before is worth less than the present one beside it.
int older_datum(std::string_view name) {
    std::string upper(name);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c & ~0x20) : c; });
    for (const char* old : {"AMG", "AGD", "ANS", "ED50", "NAD27", "LOCAL"})
        if (upper.find(old) != std::string::npos) return 10;
    return 0;
}

int easting_worth(const NameWords& name) {
    if (is_about(name)) return 0;
    if (name.holds({"easting", "rechtswert", "ostwert"})) return 90;
    if (name.has({"east", "este", "xutm", "utmx", "xcoord", "coordx", "xcoordinate"})) return 85;
    if (name.has({"x"})) return name.has({"mag", "flux", "grad", "comp", "acc", "field"}) ? 0 : 70;
    return name.has({"e"}) && name.words.size() == 1 ? 55 : 0;
}

int northing_worth(const NameWords& name) {
    if (is_about(name)) return 0;
    if (name.holds({"northing", "hochwert", "nordwert"})) return 90;
    if (name.has({"north", "norte", "yutm", "utmy", "ycoord", "coordy", "ycoordinate"})) return 85;
    if (name.has({"y"})) return name.has({"mag", "flux", "grad", "comp", "acc", "field"}) ? 0 : 70;
    return name.has({"n"}) && name.words.size() == 1 ? 55 : 0;
}

int longitude_worth(const NameWords& name) {
    if (is_about(name)) return 0;
    if (name.holds({"longitude"})) return 90;
    return name.has({"lon", "long", "lng", "xlon", "lond"}) ? 85 : 0;
}

int latitude_worth(const NameWords& name) {
    if (is_about(name)) return 0;
    if (name.holds({"latitude"})) return 90;
    return name.has({"lat", "ylat", "latd"}) ? 85 : 0;
}

bool is_correction(const NameWords& name) {
    return name.has({"corr", "cor", "correction", "corrn", "effect"}) || name.holds({"correction"});
}

int clearance_worth(const NameWords& name) {
    if (is_about(name) || is_correction(name)) return 0;
    if (name.holds({"aboveground", "radalt", "radaralt", "raltimeter"})) return 95;
    if (name.holds({"clearance"}) || name.has({"ralt", "agl", "hag", "radar"})) return 90;
    return name.holds({"laser"}) ? 75 : name.has({"lidar"}) ? 60 : 0;
}

int height_worth(const NameWords& name) {
    if (is_about(name) || is_correction(name) || name.holds({"geoid", "undulation", "separation"})) return 0;
    if (name.holds({"sensorheight", "sensorelev", "sensoralt", "flightheight", "flyingheight", "flightalt",
                    "birdheight"}))
        return 90;
    if (name.holds({"gpsheight", "gpsht", "gpshgt", "gpsalt", "gpsz", "gpselev"})) return 80;
    if (name.has({"height", "altitude", "hoehe", "altura"})) return 72;
    if (name.has({"alt", "galt", "msl", "amsl", "asl"})) return 66;
    if (name.has({"z", "ht", "hgt", "h"}) || name.holds({"orthoht", "ellht", "htm"}))
        return name.has({"mag", "flux", "grad", "comp", "acc", "field"}) ? 0 : 60;
    if (name.has({"elevation", "elev"})) return 45;
    return name.holds({"baro"}) ? 40 : 0;
}

int terrain_worth(const NameWords& name) {
    if (is_about(name) || is_correction(name) || name.has({"corrected", "tc"}) ||
        name.holds({"bouguer", "clearance"}))
        return 0;
    if (name.has(
            {"dem", "dtm", "dsm", "terrain", "topo", "topography", "srtm", "ground", "relief", "surface"}))
        return 86;
    if (name.holds({"elevation"}) || name.has({"elev"})) return 80;
    return name.holds({"terrain"}) || name.has({"rl"}) ? 60 : 0;
}

bool is_no_total_field(const NameWords& name) {
    return is_about(name) ||
           name.holds(
               {"diurnal", "flux", "susc", "grad", "deriv", "analytic", "magnitude", "basemag", "magbase"}) ||
           name.has({"base", "vd", "asig", "lag", "inc", "dec", "declination", "inclination", "x", "y", "z",
                     "dx", "dy", "dz", "var", "date", "time"});
}

int mag_worth(const NameWords& name, const SurveyColumn& column) {
    if (is_no_total_field(name)) return 0;
    int worth = 0;
    if (name.holds(
            {"tmi", "totalfield", "totalmag", "magneticfield", "magneticanomaly", "magneticintensity"}) ||
        name.has({"tf", "tfa", "tmf", "rmi"})) {
        worth = 62;
    } else if (name.has({"mag", "magn", "magnetic", "magnetics", "magnetik", "magfield"}) ||
               name.together.starts_with("mag")) {
        worth = 58;
    } else if (name.together != "igrf" && unit_of_text(column.unit_text) == Unit::nanotesla) {
        worth = name.holds({"igrf"}) ? 0 : 30;
    }
    if (worth == 0) return 0;
    if (name.holds({"final"})) worth += 30;
    if (name.holds({"micro"}) || name.has({"ml", "mlev"})) worth += 28;
    if (name.has({"lev", "level", "levelled", "leveled"}) || name.holds({"level"})) worth += 25;
    if (name.holds({"igrf", "anom", "resid"}) || name.has({"rmi"})) worth += 18;
    if (name.has({"rtp"})) worth -= 20;
    if (name.has({"corr", "corrected", "cor", "dc"}) || name.holds({"corr"})) worth += 12;
    const bool uncorrected = name.holds({"raw", "unc", "noncomp"});
    if (uncorrected) worth -= 30;
    if (name.holds({"comp"}) && !uncorrected) worth += 8;
    return worth;
}

bool is_no_gravity(const NameWords& name) {
    return is_about(name) || is_correction(name) ||
           name.has({"gbc", "scbc", "gfac", "efac", "tgrav", "drift", "tide", "etc", "dial", "tc", "closure",
                     "base", "meter", "slab", "den", "density", "date", "time"}) ||
           name.holds({"normal", "theor", "drift", "closure", "base", "meter"});
}

int grav_worth(const NameWords& name, const SurveyColumn& column) {
    if (is_no_gravity(name)) return 0;
    int worth = 0;
    if (name.holds({"boug"}) ||
        name.has({"ba", "cba", "sba", "scba", "cscba", "cgba", "gba", "cbg", "cba"})) {
        worth = 82;
        if (name.holds({"complete"}) || name.has({"cba", "cscba", "cgba", "cbg"})) worth += 6;
    } else if (name.holds({"freeair", "faanom"}) || name.has({"fa", "faa", "gfaa", "efaa", "fag"})) {
        worth = 60;
    } else if (name.holds({"isostatic"})) {
        worth = 55;
    } else if (name.has({"grav", "gravity", "gravi", "gz", "schwere"})) {
        worth = 45;
    } else if (name.holds({"obsg", "gobs", "absg", "grav"})) {
        worth = 38;
    } else if (unit_of_text(column.unit_text) == Unit::milligal) {
        worth = 20;
    }
    if (worth == 0) return 0;
    if (name.has({"267", "2670"})) {
        worth += 5;
    } else if (std::any_of(name.words.begin(), name.words.end(), [](const std::string& word) {
                   return word.size() >= 3 &&
                          (word.front() == '1' || word.front() == '2' || word.front() == '3') &&
                          word.find_first_not_of("0123456789") == std::string::npos;
               })) {
        worth -= 5;
    }
    const auto unit =
        column.unit_text.empty() ? unit_of_name_end(column.name) : unit_of_text(column.unit_text);
    if (unit) worth += unit == Unit::milligal ? 2 : 1;
    return worth;
}

int worth_of_name(Role role, std::string_view text, const SurveyColumn& column) {
    const NameWords name(text);
    switch (role) {
        case Role::line:
            return line_worth(name);
        case Role::fiducial:
            return fiducial_worth(name);
        case Role::date:
            return date_worth(name);
        case Role::easting:
            return std::max(easting_worth(name) - older_datum(text), 0);
        case Role::northing:
            return std::max(northing_worth(name) - older_datum(text), 0);
        case Role::longitude:
            return std::max(longitude_worth(name) - older_datum(text), 0);
        case Role::latitude:
            return std::max(latitude_worth(name) - older_datum(text), 0);
        case Role::sensor_height:
            return height_worth(name);
        case Role::clearance:
            return clearance_worth(name);
        case Role::terrain:
            return terrain_worth(name);
        case Role::mag:
            return mag_worth(name, column);
        case Role::grav:
            return grav_worth(name, column);
        case Role::none:
            break;
    }
    return 0;
}

}  // namespace

int role_worth(Role role, const SurveyColumn& column) {
    constexpr int description_loss = 15;
    const int by_name = worth_of_name(role, column.name, column);
    if (column.description.empty() || by_name > 0) return std::min(by_name, 100);
    // What the name calls an error or a correction is none by its description either.
    if (is_about(NameWords(column.name)) || is_correction(NameWords(column.name))) return 0;
    return std::clamp(worth_of_name(role, column.description, column) - description_loss, 0, 100);
}

std::vector<RoleBid> role_bids(Role role, const SurveyLayout& layout) {
    std::vector<RoleBid> bids;
    for (std::size_t i = 0; i < layout.columns.size(); ++i)
        if (const int worth = role_worth(role, layout.columns[i]); worth > 0)
            bids.push_back({role, i, worth});
    std::stable_sort(bids.begin(), bids.end(),
                     [](const RoleBid& a, const RoleBid& b) { return a.worth > b.worth; });
    return bids;
}

}  // namespace anomalis::intake
