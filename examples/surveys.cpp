#include "surveys.h"

#include <initializer_list>

#include "core/body_parameters.h"

namespace anomalis::examples {

namespace {

void free_only(ModelBody& body, std::initializer_list<BodyParam ModelBody::*> slots) {
    for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
    for (const auto slot : slots) (body.*slot).vary = 1;
}

struct Sheet {
    std::string name;
    BodyType type = thin_sheet;
    float distance = 0, top = 0, dip = 90, width = 0, depth_extent = 0;  ///< m, degrees
    float susc = 0, density = 2.67F;                                     ///< micro SI, g/cc
    int colour = 0;
};

/// A sheet of unlimited strike, square across an east-west line.
BodyEdit sheet(const Sheet& sheet) {
    return [sheet](ModelBody& body) {
        body.type = sheet.type;
        body.name = sheet.name;
        body.distance.value = sheet.distance;
        body.top.value = sheet.top;
        body.dip.value = sheet.dip;
        body.width.value = sheet.width;
        body.depth_extent.value = sheet.depth_extent;
        body.length.value = 0;
        body.susc.value = sheet.susc;
        body.density.value = sheet.density;
        body.colour = sheet.colour;
    };
}

/// The starting model of a sheet: moved, raised, turned, of the wrong strength.
BodyEdit off_by(float distance, float top, float dip, float strength) {
    return [=](ModelBody& body) {
        body.distance.value += distance;
        body.top.value += top;
        body.dip.value += dip;
        body.susc.value *= strength;
        free_only(body, {&ModelBody::distance, &ModelBody::top, &ModelBody::dip, &ModelBody::susc});
        body.susc.max = 4 * body.susc.value;
    };
}

/// The same for a block that both channels see.
BodyEdit block_off_by(float distance, float top, float dip, float strength, float density) {
    return [=](ModelBody& body) {
        off_by(distance, top, dip, strength)(body);
        body.density.value += density;
        body.density.vary = 1;
    };
}

Survey dyke_swarm() {
    Survey survey;
    survey.name = "dyke_swarm";
    survey.comments = {"Airborne magnetic line over a swarm of dolerite dykes, 12.5 m between readings",
                       "Noise 1 nT, a regional of 4 nT a kilometre"};
    Noise wander(7);
    for (int i = 0; i <= 400; ++i) {
        const double d = 12.5 * i;
        const double ground = 312 + 14 * std::sin(d / 900) + 5 * std::sin(d / 310 + 1);
        survey.readings.push_back({412300 + d, 7641800 + wander(1.5), ground + 60 + wander(0.8), ground});
    }
    survey.mag_noise = 1;
    survey.mag_regional = [](double d) { return 51940 + 0.004 * d; };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.field.intensity = 51940;
        w.field.inclination = -53.1F;
        w.field.declination = 6.7F;
        w.mag.float_base = 1;
        w.mag.regional_degree = 1;
    };
    survey.bodies = {{sheet({"West dyke", thin_sheet, 820, 285, 72, 18, 0, 42000, 2.95F, 0xB4761F}),
                      off_by(30, 12, 12, 0.75F)},
                     {sheet({"Twin dyke", thin_sheet, 1730, 270, 98, 12, 0, 60000, 2.95F, 0x0E7FFF}),
                      off_by(-25, -18, -14, 1.3F)},
                     {sheet({"Main dyke", thick_sheet, 2510, 255, 64, 110, 600, 33000, 2.95F, 0x2CA02C}),
                      off_by(35, 20, 15, 1.25F)},
                     {sheet({"East dyke", thin_sheet, 3620, 290, 120, 25, 900, 38000, 2.95F, 0xBD6794}),
                      off_by(-40, -12, -16, 0.8F)},
                     {sheet({"Buried plug", thick_sheet, 4350, 120, 80, 240, 450, 21000, 2.95F, 0x4B568C}),
                      off_by(30, 22, 10, 0.8F)}};
    return survey;
}

Survey fault_block() {
    Survey survey;
    survey.name = "fault_block";
    survey.comments = {
        "Draped magnetic and gravity line over a downfaulted basement block, 25 m between readings",
        "Ground from the digital terrain model; densities are contrasts to the cover",
        "Noise 0.8 nT and 0.02 mGal; a regional of -3 nT a kilometre, one of gravity that rises and bends"};
    Noise wander(11);
    for (int i = 0; i <= 320; ++i) {
        const double d = 25.0 * i;
        const double hill = 45 * std::exp(-std::pow((d - 2600) / 1300, 2));
        const double ground = 640 + hill - 0.006 * d + 6 * std::sin(d / 480);
        survey.readings.push_back({598150 + d, 6255400 + wander(2), ground + 80 + wander(1.5), ground});
    }
    survey.mag_noise = 0.8;
    survey.grav_noise = 0.02;
    survey.mag_regional = [](double d) { return 58120 - 0.003 * d; };
    survey.grav_regional = [](double d) { return -31.4 + 0.00045 * d - 6e-8 * d * (d - 8000); };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.definition.grav_column = 7;
        w.field.intensity = 58120;
        w.field.inclination = -64.5F;
        w.field.declination = 11.2F;
        w.mag.float_base = w.grav.float_base = 1;
        w.mag.regional_degree = 1;
        w.grav.regional_degree = 2;
    };
    survey.bodies = {
        {sheet({"West basement", thick_sheet, 507, 380, 62, 2310, 1500, 9000, 0.28F, 0xB4761F}),
         block_off_by(91, 60, 12, 0.8F, -0.07F)},
        {sheet({"East basement", thick_sheet, 5210, 240, 112, 2380, 1500, 12000, 0.28F, 0x2CA02C}),
         block_off_by(-107, -50, -15, 1.25F, 0.08F)},
        {sheet({"Fault dyke", thick_sheet, 3153, 470, 62, 95, 800, 45000, 0.35F, 0x0E7FFF}),
         block_off_by(46, -30, 14, 0.75F, 0.06F)}};
    return survey;
}

Survey buried_cable() {
    Survey survey;
    survey.name = "buried_cable";
    survey.comments = {"Walked line across a two-core cable under direct current, 0.25 m between readings",
                       "Sensor 1.2 m over the ground; noise 0.3 nT, a drift of 3 nT from end to end"};
    Noise wander(3);
    for (int i = 0; i <= 240; ++i) {
        const double d = 0.25 * i;
        const double ground = 18 + 0.25 * std::sin(d / 14);
        survey.readings.push_back({733104 + d, 5812660 + wander(0.02), ground + 1.2 + wander(0.02), ground});
    }
    survey.coordinate_digits = 2;
    survey.seed = 1968;
    survey.mag_noise = 0.3;
    survey.mag_regional = [](double d) { return 49310 + 0.05 * d; };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.field.intensity = 49310;
        w.field.inclination = 66.8F;
        w.field.declination = 3.1F;
        w.mag.float_base = 1;
        w.mag.regional_degree = 1;
        w.sensor_offset = 1.2F;
    };
    survey.bodies = {
        {[](ModelBody& body) {
             body.type = wire;
             body.name = "Cable";
             body.distance.value = 31.4F;
             body.top.value = 16.9F;
             body.strike.value = 12;
             body.dip.value = 35;
             body.width.value = 0.6F;
             body.offset.value = 0.35F;
             body.susc.value = 6500;
             body.colour = 0x0E7FFF;
         },
         [](ModelBody& body) {
             body.distance.value = 29.8F;
             body.top.value = 17.3F;
             body.dip.value = 55;
             body.susc.value = 5200;
             free_only(body, {&ModelBody::distance, &ModelBody::top, &ModelBody::dip, &ModelBody::susc});
             body.susc.max = 20000;
         }}};
    return survey;
}

Survey remanent_pipe() {
    Survey survey;
    survey.name = "remanent_pipe";
    survey.comments = {"Airborne magnetic line over a volcanic pipe, 10 m between readings",
                       "Noise 1.5 nT, a regional of 5 nT a kilometre"};
    Noise wander(23);
    for (int i = 0; i <= 240; ++i) {
        const double d = 10.0 * i;
        const double ground = 1186 + 6 * std::sin(d / 520);
        survey.readings.push_back({284500 + d, 6912300 + wander(1.5), ground + 50 + wander(0.8), ground});
    }
    survey.mag_noise = 1.5;
    survey.mag_regional = [](double d) { return 28640 + 0.005 * d; };
    survey.describe = [](Workspace& w) {
        w.definition.mag_column = 6;
        w.field.intensity = 28640;
        w.field.inclination = -62.4F;
        w.field.declination = -18.6F;
        w.mag.float_base = 1;
        w.mag.regional_degree = 1;
    };
    // It stands, so it is a sheet as long as it is wide; the starting model knows of no remanence.
    survey.bodies = {
        {[](ModelBody& body) {
             sheet({"Pipe", thick_sheet, 1140, 1130, 90, 130, 700, 14000, 2.95F, 0x4B568C})(body);
             body.length.value = 130;
             body.rem_q.value = 1.8F;
             body.rem_i.value = 12;
             body.rem_d.value = 76;
         },
         [](ModelBody& body) {
             off_by(60, -20, 0, 1.4F)(body);
             body.rem_q.value = body.rem_i.value = body.rem_d.value = 0;
         }}};
    return survey;
}

}  // namespace

std::vector<Survey> surveys() {
    return {dyke_swarm(), fault_block(), buried_cable()};
}

std::vector<Survey> riddles() {
    return {remanent_pipe()};
}

std::vector<Survey> dyke_lines() {
    constexpr int lines = 6, stations = 81;
    constexpr double spacing = 20, apart = 200, strike = 9.9;  // m, degrees
    std::vector<Survey> all;
    for (int line = 0; line < lines; ++line) {
        Survey survey;
        survey.name = std::to_string(1010 + 10 * line);
        Noise wander(100 + static_cast<unsigned>(line));
        for (int i = 0; i < stations; ++i) {
            const double d = spacing * i;
            const double ground = 298 + 9 * std::sin((d + 120 * line) / 700);
            survey.readings.push_back(
                {415600 + d, 7648200 + apart * line + wander(1), ground + 60 + wander(0.5), ground});
        }
        survey.seed = 2000 + static_cast<unsigned>(line);
        survey.mag_noise = 1;
        survey.mag_regional = [line](double d) { return 51940 + 3 * line + 0.004 * d; };
        survey.describe = [](Workspace& w) {
            w.definition.mag_column = 6;
            w.field.intensity = 51940;
            w.field.inclination = -53.1F;
            w.field.declination = 6.7F;
        };
        // East by so much from line to line along the strike.
        const auto east = static_cast<float>(apart * line * std::tan(strike * std::numbers::pi / 180));
        const auto dyke = [&](const std::string& name, float distance, float top, float dip, float susc) {
            const BodyEdit square =
                sheet({name, thin_sheet, distance + east, top, dip, 15, 0, susc, 2.95F, 0});
            const BodyEdit truth = [square, turn = static_cast<float>(strike)](ModelBody& body) {
                square(body);
                body.strike.value = turn;
            };
            survey.bodies.push_back({truth, [](ModelBody&) {}});
        };
        dyke("West dyke", 420, 262, 75, 52000);
        dyke("East dyke", 1010, 238, 105, 64000);
        all.push_back(std::move(survey));
    }
    return all;
}

}  // namespace anomalis::examples
