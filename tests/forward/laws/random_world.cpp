#include "forward/laws/random_world.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "core/body_parameters.h"
#include "forward/exact/exact_axes.h"
#include "forward/exact/exact_response.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::forward::laws {

namespace {

float number(Chance& chance, double low, double high) {
    return static_cast<float>(round_number(chance, low, high));
}

void choose_sheet(Chance& chance, ModelBody& body, double size) {
    body.dip.value = chance.one_in(4) ? 90.0F : number(chance, 4, 176);
    body.depth_extent.value = chance.one_in(3) ? 0.0F : number(chance, 0.3 * size, 3 * size);
    body.length.value = chance.one_in(3) ? 0.0F : number(chance, 0.3 * size, 5 * size);
    if (chance.one_in(2)) body.offset.value = number(chance, -size, size);
    if (chance.one_in(2)) body.plunge.value = number(chance, -30, 30);
    if (chance.one_in(3)) body.slope.value = number(chance, -20, 20);
    if (body.type == thin_sheet) body.width.value = number(chance, 0.02 * size, 0.2 * size);
    // A top that falls nearly as its walls does not meet them or runs far out.
    if (std::tan(exact_radians(body.slope.value)) * dip_cotangent(body.dip.value) < -0.5)
        body.slope.value = 0;
}

void choose_pipe(Chance& chance, ModelBody& body, double size) {
    body.dip.value = number(chance, -45, 45);
    body.length.value = chance.one_in(3) ? 0.0F : number(chance, 0.5 * size, 5 * size);
    if (chance.one_in(2)) body.offset.value = number(chance, -size, size);
    if (chance.one_in(2)) body.plunge.value = number(chance, -45, 45);
    if (chance.one_in(3))
        body.shell_thickness = body.width.value * static_cast<float>(1 + chance.below(3)) / 8;
    if (chance.one_in(2)) body.end_thickness = body.length.value / 16;
    body.num_sectors = 4 + chance.below(20);
}

void choose_magnetisation(Chance& chance, ModelBody& body) {
    body.include_demagnetisation = chance.one_in(3) ? 1 : 0;
    body.susc.value = number(chance, body.include_demagnetisation ? 10 : -200000, 400000);
    if (chance.one_in(2)) {
        body.rem_q.value = number(chance, 0, 5);
        body.rem_i.value = number(chance, -90, 90);
        body.rem_d.value = number(chance, -180, 360);
    }
}

}  // namespace

double round_number(Chance& chance, double low, double high) {
    return std::round(64 * chance.between(low, high)) / 64;
}

ModelBody random_body(Chance& chance, BodyType type, double size) {
    ModelBody body;
    body.type = type;
    body.top.value = number(chance, -200, 200);
    body.strike.value =
        chance.one_in(5) ? static_cast<float>(90 * chance.below(4)) : number(chance, -360, 360);
    body.width.value = number(chance, 0.2 * size, size);
    body.density.value = number(chance, -3, 3) + 0.0078125F;
    if (is_sheet(type)) choose_sheet(chance, body, size);
    if (is_step(type)) {
        body.dip.value = number(chance, 4, 176);
        body.depth_extent.value = number(chance, 0.3 * size, 3 * size);
    }
    if (type == pipe) choose_pipe(chance, body, size);
    choose_magnetisation(chance, body);
    if (type == wire) {
        body.dip.value = number(chance, -180, 180);
        body.susc.value = number(chance, -20000, 20000);
        if (chance.one_in(2)) body.offset.value = number(chance, 0, size);
    }
    return body;
}

World random_world(Chance& chance, BodyType type) {
    World world;
    world.field = {number(chance, 20000, 65000), number(chance, -90, 90), number(chance, -180, 180)};
    const double size = std::exp(chance.between(std::log(4.0), std::log(800.0)));
    world.body = random_body(chance, type, size);
    const double floor = highest_part(world.body) + size * std::exp(chance.between(-2.5, 1));
    for (int i = 0; i < 12; ++i)
        world.stations.push_back({round_number(chance, -3 * size, 3 * size),
                                  round_number(chance, -3 * size, 3 * size),
                                  floor + chance.between(0, i % 3 == 0 ? size : 0.1 * size)});
    return world;
}

double highest_part(const ModelBody& body) {
    const double half = std::abs(static_cast<double>(body.width.value)) / 2;
    double rise = 0;
    if (body.type == sphere) rise = half;
    if (body.type == wire) rise = std::abs(body.offset.value) / 2.0;
    if (is_sheet(body.type)) {
        const SheetShape sheet = sheet_shape(body);
        const double slant = std::max(-sheet.near_end * sheet.plunge, -sheet.far_end * sheet.plunge);
        rise = std::max(0.0, sheet.rise) + std::max(0.0, slant);
    }
    if (body.type == pipe) {
        const PipeShape shape = pipe_shape(body);
        rise =
            shape.outer + std::max({0.0, -shape.near_end * shape.sin_fall, -shape.far_end * shape.sin_fall});
    }
    return body.top.value + rise;
}

double clearance(const World& world) {
    double lowest = HUGE_VAL;
    for (const Point3& at : world.stations) lowest = std::min(lowest, at.z);
    return lowest - highest_part(world.body);
}

std::vector<double> exact_curve(const World& world, int channel) {
    // Without stations of its own the line leaves the body where it is.
    Workspace workspace;
    workspace.field = world.field;
    workspace.formulas = Formulas::exact;
    std::vector<double> east, north, up, values(world.stations.size());
    for (const Point3& at : world.stations) {
        east.push_back(at.x);
        north.push_back(at.y);
        up.push_back(at.z);
    }
    ModelBody body = world.body;
    Polyhedron polyhedron;
    ExactNotes notes;
    exact_values(workspace, body, channel, {east.data(), north.data(), up.data(), up.size()}, polyhedron,
                 values, notes);
    EXPECT_FALSE(notes.steep_top || notes.polygon) << told(world);
    return values;
}

Curves exact_curves(const World& world) {
    return {exact_curve(world, channel_mag), exact_curve(world, channel_grav)};
}

std::string told(const World& world) {
    std::ostringstream text;
    text.precision(9);
    const ModelBody& body = world.body;
    text << "field " << world.field.intensity << ' ' << world.field.inclination << ' '
         << world.field.declination << "; type " << body.type << " at " << body.east << ' ' << body.north;
    for (const BodyParameter& row : body_parameters())
        if ((body.*row.slot).value != 0) text << ", " << row.name << ' ' << (body.*row.slot).value;
    text << ", demagnetised " << body.include_demagnetisation << ", shell " << body.shell_thickness
         << ", caps " << body.end_thickness << ", sectors " << body.num_sectors;
    if (!world.stations.empty())
        text << "; first station " << world.stations[0].x << ' ' << world.stations[0].y << ' '
             << world.stations[0].z;
    return text.str();
}

std::string case_text(std::uint32_t seed, int number, BodyType type) {
    return "ANOMALIS_SEED=" + std::to_string(seed) + " ANOMALIS_CASES=" + std::to_string(number + 1) +
           ", type " + std::to_string(type);
}

}  // namespace anomalis::forward::laws
