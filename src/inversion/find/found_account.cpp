#include "inversion/find/found_account.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/body_parameters.h"

namespace anomalis::inversion {

namespace {

std::string sheets(int count, const char* kind) {
    return std::to_string(count) + " " + kind + (count == 1 ? " sheet" : " sheets");
}

/// "2 thick sheets and 1 thin sheet, regional of degree 2".
std::string kind_of(const FoundModel& model, std::int32_t degree) {
    int thin = 0, limited = 0;
    for (auto body = model.bodies.end() - model.found; body != model.bodies.end(); ++body) {
        thin += body->type == thin_sheet;
        limited += body->depth_extent.value > 0;
    }
    const int thick = model.found - thin;
    std::string text = thick > 0 ? sheets(thick, "thick") : "";
    if (thin > 0) text += (text.empty() ? "" : " and ") + sheets(thin, "thin");
    if (text.empty()) text = "no new body";
    if (limited > 0) text += ", " + std::to_string(limited) + " of them limited in depth";
    if (degree != no_regional) text += ", regional of degree " + std::to_string(degree);
    return text;
}

}  // namespace

FoundModel found_model(const LineFit& line, const JudgedModel& judged) {
    FoundModel model;
    model.bodies = judged.model.bodies;
    model.found = judged.found;
    std::sort(model.bodies.end() - judged.found, model.bodies.end(),
              [](const ModelBody& a, const ModelBody& b) { return a.distance.value < b.distance.value; });
    const auto present = static_cast<int>(model.bodies.size()) - judged.found;
    for (int i = present; i < static_cast<int>(model.bodies.size()); ++i) {
        ModelBody& body = model.bodies[static_cast<std::size_t>(i)];
        body.name = "Body " + std::to_string(i + 1);
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        for (const int code : line.free_parameters(body)) body_param(body, code).vary = 1;
    }
    const auto count = judged.model.residual.size() / static_cast<Eigen::Index>(line.channels().size());
    model.rms = std::sqrt(judged.model.residual.head(count).squaredNorm() /
                          static_cast<double>(std::max<Eigen::Index>(count, 1)));
    model.criterion = judged.criterion;
    const Workspace& workspace = line.workspace();
    model.mag_degree = workspace.mag.regional_degree;
    model.grav_degree = workspace.grav.regional_degree;
    model.kind = kind_of(model, line.degree());
    return model;
}

}  // namespace anomalis::inversion
