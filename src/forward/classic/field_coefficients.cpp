#include "forward/classic/field_coefficients.h"

#include <cmath>

#include "core/angles.h"
#include "core/faults.h"
#include "core/numbers.h"

namespace anomalis::forward {

namespace {

/// Micro SI to SI.
constexpr double micro = 1000000;

/// A vector in geographic axes, the order in which the body keeps its moment.
struct Vector {
    double east = 0, north = 0, down = 0;

    double length() const { return std::sqrt(east * east + north * north + down * down); }
};

/// The same turned by the strike: across it, along it, down.
struct StrikeVector {
    double across = 0, along = 0, down = 0;
};

StrikeVector turned_to_strike(const Vector& v, const ModelBody& body) {
    return {v.east * body.cos_strike - v.north * body.sin_strike,
            v.north * body.cos_strike + v.east * body.sin_strike, v.down};
}

Vector turned_back(const StrikeVector& v, const ModelBody& body) {
    return {v.across * body.cos_strike + v.along * body.sin_strike,
            -v.across * body.sin_strike + v.along * body.cos_strike, v.down};
}

/// A thin sheet demagnetises along its normal alone, there with a factor of 1. Every body is treated so.
Vector demagnetised(const Vector& induced, const ModelBody& body) {
    const double c = body.cos_dip;
    const double s = body.sin_dip;
    StrikeVector v = turned_to_strike(induced, body);
    double normal = v.down * c + v.across * s;
    const double in_sheet = v.down * s - v.across * c;
    const double divisor = body.susc.value / micro + 1;
    if (divisor == 0) throw Fault(FaultKind::division_by_zero);
    normal /= divisor;
    v.across = normal * s - in_sheet * c;
    v.down = normal * c + in_sheet * s;
    return turned_back(v, body);
}

struct Direction {
    double declination, sin_inclination, cos_inclination;
};

/// Resultant of induced and remanent parts; its direction is taken from the vector.
Direction add_remanence(Vector& total, double remanent, ModelBody& body) {
    const double inclination = body.rem_i.value * radians_per_degree;
    const double declination = body.rem_d.value * radians_per_degree;
    total.east += remanent * std::cos(inclination) * std::sin(declination);
    total.north += remanent * std::cos(inclination) * std::cos(declination);
    total.down += remanent * std::sin(inclination);
    const double magnitude = total.length();
    if (magnitude == 0) throw Fault(FaultKind::division_by_zero);
    body.last_calculated = to_single(magnitude);
    const double horizontal = std::sqrt(total.east * total.east + total.north * total.north);
    return {guarded_atan2(total.east, total.north), total.down / magnitude, horizontal / magnitude};
}

void set_shape_coefficients(ModelBody& body) {
    const double fx = body.field_north, fy = body.field_east, fz = body.field_down;
    const double mx = body.mag_north, my = body.mag_east, mz = body.mag_down;
    if (body.type == sphere) {
        body.coef_a = to_single(2 * mx * fx - my * fy - mz * fz);
        body.coef_b = to_single(2 * mz * fz - mx * fx - my * fy);
        body.coef_c = to_single(3 * (mz * fx + mx * fz));
        return;
    }
    // The field's north component stands for its component across strike, whatever the strike: the
    // closed formulae are those of a body that strikes east.
    body.coef_a = to_single(mx * fx - mz * fz);
    body.coef_b = to_single(-2 * (mz * fx + mx * fz));
    body.coef_c = 0;
}

void set_moment(ModelBody& body, double x, double y, double z) {
    body.moment_x = to_single(x);
    body.moment_y = to_single(y);
    body.moment_z = to_single(z);
}

void fill_coefficients(const Workspace& workspace, ModelBody& body) {
    set_body_angles(body);
    const AmbientField field = ambient_field(workspace);
    Vector total{field.east * field.intensity, field.north * field.intensity, field.down * field.intensity};
    if (body.type == wire) {
        const StrikeVector turned = turned_to_strike(total, body);
        return set_moment(body, turned.across, turned.along, turned.down);
    }
    const double susc = body.susc.value;
    for (double* part : {&total.east, &total.north, &total.down}) *part = *part * susc / 4 / pi / micro;
    if (body.include_demagnetisation == 1) total = demagnetised(total, body);

    // Without a remanence the direction is the field's, also after the demagnetisation has turned the
    // vector: only its reduced size is used then.
    const double inclination = workspace.field.inclination * radians_per_degree;
    Direction direction{workspace.field.declination * radians_per_degree, std::sin(inclination),
                        std::cos(inclination)};
    if (body.rem_q.value != 0) {
        direction = add_remanence(total, remanent_magnitude(workspace, body), body);
    } else {
        body.last_calculated = to_single(susc < 0 ? -total.length() : total.length());
    }
    body.field_north = to_single(field.north);
    body.field_east = to_single(field.east);
    body.field_down = to_single(field.down);
    body.mag_north = to_single(std::cos(direction.declination) * direction.cos_inclination);
    body.mag_east = to_single(std::sin(direction.declination) * direction.cos_inclination);
    body.mag_down = to_single(direction.sin_inclination);
    set_shape_coefficients(body);
    set_moment(body, total.east, total.north, total.down);
}

}  // namespace

void set_body_angles(ModelBody& body) {
    const double dip = body.dip.value * radians_per_degree;
    const double strike = body.strike.value * radians_per_degree;
    body.cos_dip = to_single(std::cos(dip));
    body.sin_dip = to_single(std::sin(dip));
    body.cos_strike = to_single(std::cos(strike));
    body.sin_strike = to_single(std::sin(strike));
}

double strike_against_profile(const ModelBody& body, float azimuth) {
    return std::sin(body.strike.value * radians_per_degree - azimuth);
}

AmbientField ambient_field(const Workspace& workspace) {
    const double inclination = workspace.field.inclination * radians_per_degree;
    const double declination = workspace.field.declination * radians_per_degree;
    return {std::cos(declination) * std::cos(inclination), std::sin(declination) * std::cos(inclination),
            std::sin(inclination), workspace.field.intensity};
}

double remanent_magnitude(const Workspace& workspace, const ModelBody& body) {
    return static_cast<double>(workspace.field.intensity) * body.rem_q.value * body.susc.value / 4 / pi /
           micro;
}

Magnetisation plain_magnetisation(const Workspace& workspace, const ModelBody& body) {
    const AmbientField field = ambient_field(workspace);
    const double induced = body.susc.value * field.intensity / (4 * pi) / micro;
    const double remanent = remanent_magnitude(workspace, body);
    const double inclination = body.rem_i.value * radians_per_degree;
    const double declination = body.rem_d.value * radians_per_degree;
    return {induced * field.north + remanent * std::cos(inclination) * std::cos(declination),
            induced * field.east + remanent * std::cos(inclination) * std::sin(declination),
            induced * field.down + remanent * std::sin(inclination)};
}

int calculate_field_coefficients(const Workspace& workspace, ModelBody& body, Faults& faults) {
    return report_failure(faults, "An error occurred while calculating the field coefficients",
                          [&] { fill_coefficients(workspace, body); });
}

}  // namespace anomalis::forward
