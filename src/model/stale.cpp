#include "model/stale.h"

#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/setting_fields.h"
#include "core/workspace.h"

namespace anomalis::model {

namespace {

/// Takes values over one after the other and gathers what those that differ leave out of date.
template <std::size_t Count>
class Comparison {
  public:
    explicit Comparison(std::optional<std::array<double, Count>>& known) : first_(!known) {
        if (first_) known.emplace();
        known_ = &*known;
    }

    void look_at(double value, const Stale& makes) {
        double& known = known_->at(next_++);
        // Written so that a value that is no number differs from itself and is looked at again.
        if (first_ || !(known == value)) stale_ |= makes;
        known = value;
    }
    /// What does not count now keeps its place.
    void pass() { ++next_; }
    const Stale& stale() const { return stale_; }

  private:
    std::array<double, Count>* known_;
    bool first_;
    std::size_t next_ = 0;
    Stale stale_;
};

template <class Field>
constexpr bool is_input(const Field& field) {
    return std::is_arithmetic_v<std::remove_cvref_t<decltype(std::declval<ModelBody>().*field.member)>> &&
           field.stale.any();
}
static_assert(std::tuple_size_v<BodyInputs> ==
              body_parameter_count +
                  std::apply([](const auto&... field) { return (std::size_t{is_input(field)} + ...); },
                             body_fields));
static_assert(std::tuple_size_v<SettingInputs> ==
              std::apply([](const auto&... row) { return (std::size_t{row.stale.any()} + ...); },
                         setting_fields));

Stale compare_body(ModelBody& body) {
    Comparison comparison(body.known_inputs);
    for (const BodyParameter& row : body_parameters()) comparison.look_at((body.*row.slot).value, row.stale);
    const auto look_at = [&](const auto& field) {
        if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(body.*field.member)>>)
            if (is_input(field)) comparison.look_at(body.*field.member, field.stale);
    };
    std::apply([&](const auto&... field) { (look_at(field), ...); }, body_fields);
    return comparison.stale();
}

Stale compare_settings(Workspace& workspace) {
    Comparison comparison(workspace.known_settings);
    for_each_setting([&](const auto& row) {
        if constexpr (is_number_setting<decltype(row)>) {
            if (!row.stale.any()) return;
            if (row.counts(workspace)) {
                comparison.look_at(static_cast<double>(row.get(workspace)), row.stale);
            } else {
                comparison.pass();
            }
        }
    });
    return comparison.stale();
}

void mark_rows(Workspace& w, const Stale& stale) {
    if (stale.elevations) w.elevations_ready = false;
    if (stale.mag_rows) w.mag.observed_filtered = w.mag.calculated_filtered = false;
    if (stale.grav_rows) w.grav.observed_filtered = w.grav.calculated_filtered = false;
}

/// A base level that floats is the mean that the filters found, unless somebody wrote into it since.
void mark_floating_rows(Channel& channel) {
    if (channel.float_base == 1 && channel.base != channel.mean)
        channel.observed_filtered = channel.calculated_filtered = false;
}

void mark_responses(ModelBody& body, const Stale& stale) {
    if (stale.mag) body.mag_response_valid = false;
    if (stale.grav) body.grav_response_valid = false;
}

/// A body that is new, or came back with a step, may have stood on another line or on none.
void fit_to_line(const Workspace& w, ModelBody& body) {
    if (w.station_count <= 0 || body.response.rows() == w.station_count) return;
    body.response.assign(w.station_count);
    mark_responses(body, all_responses);
}

}  // namespace

void drop_line_read_otherwise(Workspace& workspace) {
    if (workspace.station_count > 0 && workspace.read_as && *workspace.read_as != line_inputs(workspace))
        drop_stations(workspace);
}

void find_stale(Workspace& workspace) {
    drop_line_read_otherwise(workspace);
    const Stale settings = compare_settings(workspace);
    mark_rows(workspace, settings);
    mark_floating_rows(workspace.mag);
    mark_floating_rows(workspace.grav);
    // Also of those that are gone: a step may bring them back where they were.
    for (ModelBody& body : workspace.bodies) mark_responses(body, settings);
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        mark_responses(body, compare_body(body));
        fit_to_line(workspace, body);
    }
}

}  // namespace anomalis::model
