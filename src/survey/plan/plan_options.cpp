#include "survey/plan/plan_options.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/numbers.h"
#include "core/regional.h"
#include "show/page_view.h"

namespace anomalis::survey {

namespace {

constexpr int most_bodies = 100, most_alternatives = 20, most_iterations = std::numeric_limits<int>::max(),
              most_starts = 10000, most_samples = 1000000, most_seed = std::numeric_limits<int>::max(),
              least_pixels = 16, most_pixels = 16384;
constexpr double most_degrees = 90;

std::int32_t regional_of(const PlanNode& node) {
    const bool word = node.kind == PlanKind::text || node.kind == PlanKind::cell;
    if (word && node.text == "none") return no_regional;
    double degree = node.number;
    const bool read =
        node.kind == PlanKind::number || (node.kind == PlanKind::cell && parse_number(node.text, degree));
    if (!read || degree < 0 || degree > most_regional_degree || degree != std::floor(degree))
        refuse_plan(node, "must be \"none\", 0 (level), 1 (slope), 2 (bend) or 3 (cubic)");
    return static_cast<std::int32_t>(degree);
}

float noise_of(const PlanNode& node, const std::string& unit) {
    const std::string what = "a number of " + unit + " above 0";
    const auto noise = static_cast<float>(number_of_node(node, what));
    if (!(noise > 0) || !std::isfinite(noise)) refuse_plan(node, "must be " + what);
    return noise;
}

/// [A, B], or "A:B" as the commands take it.
flow::DistanceWindow window_of(const PlanNode& node) {
    flow::DistanceWindow window;
    bool read = false;
    if (node.kind == PlanKind::list && node.items.size() == 2) {
        window = {number_of_node(node.items[0]), number_of_node(node.items[1])};
        read = true;
    } else if (node.kind == PlanKind::text || node.kind == PlanKind::cell) {
        const std::size_t colon = node.text.find(':');
        read = colon != std::string::npos && parse_number(node.text.substr(0, colon), window.first) &&
               parse_number(node.text.substr(colon + 1), window.last);
    }
    if (!read || !(window.first < window.last))
        refuse_plan(node,
                    "must be two distances A and B along the profile in m, A below B: [A, B] or \"A:B\"");
    return window;
}

void take_kinds(const PlanNode& node, FindStep& find) {
    find.thin = find.thick = false;
    for (const std::string& kind : texts_of(node)) {
        if (kind != "thin" && kind != "thick") refuse_plan(node, "must be thin, thick or both, not " + kind);
        (kind == "thin" ? find.thin : find.thick) = true;
    }
    if (!find.thin && !find.thick) refuse_plan(node, "must be thin, thick or both");
}

Formulas formulas_of(const PlanNode& node) {
    return *formulas_of_name(choice_of(node, {"classic", "exact"}));
}

double degrees_of(const PlanNode& node) {
    const double degrees = number_of_node(node, "a number of degrees from 0 to 90");
    if (degrees < 0 || degrees > most_degrees) refuse_plan(node, "must be from 0 to 90 degrees");
    return degrees;
}

std::vector<std::string> view_names() {
    std::vector<std::string> names;
    for (const show::PageView& view : show::page_views) names.emplace_back(view.name);
    return names;
}

const std::vector<std::string>& export_names() {
    static const std::vector<std::string> names{"profile-table", "model-table", "mesh",
                                                "clean-profile", "clean-model", "dxf-3d",
                                                "dxf-plan",      "geojson",     "geopackage"};
    return names;
}

ExportNames exports_of(const PlanNode& node) {
    if (const auto flag = flag_if_one(node); flag && !*flag) return {};
    ExportNames exports;
    for (const std::string& name : texts_of(node)) {
        PlanNode one = node;
        one.kind = PlanKind::text;
        one.text = name;
        exports.push_back(choice_of(one, export_names()));
        if (std::ranges::count(exports, name) > 1) refuse_plan(node, "names " + name + " twice");
    }
    return exports;
}

/// One option, as a key of a plan and, with "_" for "." and "-", as a column of a table.
struct Option {
    std::string key;
    void (*take)(const PlanNode& node, LineOptions& options);
};

template <class Step>
Step& said(std::optional<Step>& step) {
    if (!step) step.emplace();
    return *step;
}

const std::vector<Option>& plain_options() {
    static const std::vector<Option> options{
        {"formulas", [](const PlanNode& node, LineOptions& o) { o.formulas = formulas_of(node); }},
        {"channel",
         [](const PlanNode& node, LineOptions& o) {
             o.channel = choice_of(node, {"mag", "grav", "joint"});
         }},
        {"regional", [](const PlanNode& node, LineOptions& o) { o.fit.regional_degree = regional_of(node); }},
        {"noise-mag", [](const PlanNode& node, LineOptions& o) { o.fit.mag_noise = noise_of(node, "nT"); }},
        {"noise-grav",
         [](const PlanNode& node, LineOptions& o) { o.fit.grav_noise = noise_of(node, "mGal"); }},
        {"export", [](const PlanNode& node, LineOptions& o) { o.exports = exports_of(node); }},
    };
    return options;
}

/// What is said of one command.
struct CommandOptions {
    std::string name;
    void (*set)(bool on, LineOptions& options);
    std::vector<Option> options;  ///< their keys without the name of the command
};

template <auto Step>
void set_step(bool on, LineOptions& options) {
    if (on)
        said(options.*Step);
    else
        (options.*Step).reset();
}

CommandOptions find_options() {
    return {
        "find",
        set_step<&LineOptions::find>,
        {{"most",
          [](const PlanNode& n, LineOptions& o) { said(o.find).most = whole_number_of(n, 1, most_bodies); }},
         {"bodies", [](const PlanNode& n,
                       LineOptions& o) { said(o.find).bodies = whole_number_of(n, 1, most_bodies); }},
         {"kinds", [](const PlanNode& n, LineOptions& o) { take_kinds(n, said(o.find)); }},
         {"free-present", [](const PlanNode& n, LineOptions& o) { said(o.find).free_present = flag_of(n); }},
         {"alternatives",
          [](const PlanNode& n, LineOptions& o) {
              said(o.find).alternatives = whole_number_of(n, 1, most_alternatives);
          }},
         {"window", [](const PlanNode& n, LineOptions& o) { said(o.find).window = window_of(n); }}}};
}

CommandOptions invert_options() {
    return {"invert",
            set_step<&LineOptions::invert>,
            {{"target",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.invert).target = choice_of(n, {"data", "gradient"});
              }},
             {"method",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.invert).method = choice_of(n, {"least-squares", "sweep"});
              }},
             {"iterations",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.invert).iterations = whole_number_of(n, 1, most_iterations);
              }},
             {"starts", [](const PlanNode& n, LineOptions& o) {
                  said(o.invert).starts = whole_number_of(n, 0, most_starts);
              }}}};
}

CommandOptions uncertainty_options() {
    return {"uncertainty",
            set_step<&LineOptions::uncertainty>,
            {{"target",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.uncertainty).target = choice_of(n, {"data", "gradient"});
              }},
             {"samples",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.uncertainty).samples = whole_number_of(n, 1, most_samples);
              }},
             {"seed", [](const PlanNode& n,
                         LineOptions& o) { said(o.uncertainty).seed = whole_number_of(n, 0, most_seed); }},
             {"window", [](const PlanNode& n, LineOptions& o) { said(o.uncertainty).window = window_of(n); }},
             {"strike-within",
              [](const PlanNode& n, LineOptions& o) { said(o.uncertainty).strike_within = degrees_of(n); }},
             {"vary-bodies",
              [](const PlanNode& n, LineOptions& o) { said(o.uncertainty).vary_bodies = flag_of(n); }},
             {"same-regional",
              [](const PlanNode& n, LineOptions& o) { said(o.uncertainty).same_regional = flag_of(n); }}}};
}

CommandOptions render_options() {
    return {"render",
            set_step<&LineOptions::render>,
            {{"format",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.render).format = choice_of(n, {"png", "svg", "pdf", "emf"});
              }},
             {"view",
              [](const PlanNode& n, LineOptions& o) { said(o.render).view = choice_of(n, view_names()); }},
             {"width",
              [](const PlanNode& n, LineOptions& o) {
                  said(o.render).width = whole_number_of(n, least_pixels, most_pixels);
              }},
             {"height", [](const PlanNode& n, LineOptions& o) {
                  said(o.render).height = whole_number_of(n, least_pixels, most_pixels);
              }}}};
}

const std::vector<CommandOptions>& command_options() {
    static const std::vector<CommandOptions> all{find_options(), invert_options(), uncertainty_options(),
                                                 render_options()};
    return all;
}

std::vector<std::string> keys_of(const std::vector<Option>& options) {
    std::vector<std::string> keys;
    for (const Option& option : options) keys.push_back(option.key);
    return keys;
}

/// find = true, or [find] with its options, or find_most and the like beside it.
void take_command(const PlanNode& table, const CommandOptions& command, LineOptions& options) {
    const PlanNode* const whole = table.entry(command.name);
    std::optional<bool> on;
    if (whole && whole->kind == PlanKind::table) {
        refuse_unknown_keys(*whole, keys_of(command.options));
        command.set(true, options);
        for (const Option& option : command.options)
            if (const PlanNode* node = whole->entry(option.key)) option.take(*node, options);
    } else if (whole) {
        on = flag_if_one(*whole);
        if (!on)
            refuse_plan(*whole, whole->kind == PlanKind::cell ? "must be yes or no"
                                                              : "must be true, false or a table of options");
        command.set(*on, options);
    }
    for (const Option& option : command.options) {
        const PlanNode* const node = table.entry(command.name + "." + option.key);
        if (!node) continue;
        if (on && !*on) refuse_plan(*node, "is said of a command that is not to be done");
        option.take(*node, options);
    }
}

/// What does not go together.
void check_options(const PlanNode& table, const LineOptions& options) {
    const auto said_in = [&](const std::string& command, const std::string& key) -> const PlanNode& {
        if (const PlanNode* node = table.entry(command + "." + key)) return *node;
        const PlanNode* const whole = table.entry(command);
        const PlanNode* const inside = whole ? whole->entry(key) : nullptr;
        return inside ? *inside : whole ? *whole : table;
    };
    const auto& find = options.find;
    if (find && find->bodies && find->most && *find->bodies > *find->most)
        refuse_plan(said_in("find", "bodies"), "asks for more bodies than most allows");
    if (options.channel == "joint" && options.invert && options.invert->method != "least-squares")
        refuse_plan(said_in("invert", "method"), "the channel joint needs the method least-squares");
}

}  // namespace

const std::vector<std::string>& option_keys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> all = keys_of(plain_options());
        for (const CommandOptions& command : command_options()) all.push_back(command.name);
        return all;
    }();
    return keys;
}

const std::vector<std::string>& option_columns() {
    static const std::vector<std::string> columns = [] {
        std::vector<std::string> all;
        for (const Option& option : plain_options()) all.push_back(key_word(option.key));
        for (const CommandOptions& command : command_options()) {
            all.push_back(command.name);
            for (const Option& option : command.options)
                all.push_back(key_word(command.name + "." + option.key));
        }
        return all;
    }();
    return columns;
}

void take_options(const PlanNode& table, LineOptions& options) {
    for (const Option& option : plain_options())
        if (const PlanNode* node = table.entry(option.key)) option.take(*node, options);
    for (const CommandOptions& command : command_options()) take_command(table, command, options);
    check_options(table, options);
}

}  // namespace anomalis::survey
