#include "inversion/ensemble/ensemble_words.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/body_parameters.h"
#include "core/worth_text.h"
#include "inversion/ensemble/ensemble_bands.h"
#include "inversion/line_place.h"
#include "model/burial_depth.h"

namespace anomalis::inversion {

namespace {

constexpr double open = EnsembleParameter::open;
/// Regionals that explain the line so much better are named.
constexpr double strong_evidence = 6;

struct Band {
    double lower = open, upper = open;
};

std::string of_body(std::int32_t body) {
    return " of body " + std::to_string(body);
}

/// As the grid calls it for a body of this type, in full.
std::string name_of(std::int32_t type, int param_code) {
    const std::string_view caption = body_parameter(param_code).grid.caption.of(type);
    if (caption == "Susc") return "Susceptibility";
    if (caption == "Dens") return "Density contrast";
    if (caption == "Depth Ext") return "Depth extent";
    if (caption.substr(0, 3) == "Rem")
        return param_code == param_rem_q   ? "Koenigsberger ratio"
               : param_code == param_rem_d ? "Declination of the remanence"
                                           : "Inclination of the remanence";
    return std::string(caption.empty() || caption == "N/A" ? param_name(param_code) : caption);
}

std::string with_unit(const std::string& number, std::string_view unit) {
    if (unit.empty()) return number;
    return number + (unit == "°" ? "" : " ") + std::string(unit);
}

/// "84 to 118 m", "below 140 m", "above 35 m", "not determined".
std::string band_text(const Band& band, std::string_view unit) {
    const bool no_lower = std::isnan(band.lower), no_upper = std::isnan(band.upper);
    if (no_lower && no_upper) return "not determined";
    if (no_lower) return "below " + with_unit(text_of_worth(band.upper, std::abs(band.upper) / 10), unit);
    if (no_upper) return "above " + with_unit(text_of_worth(band.lower, std::abs(band.lower) / 10), unit);
    const double worth = (band.upper - band.lower) / 2;
    return text_of_worth(band.lower, worth) + " to " + with_unit(text_of_worth(band.upper, worth), unit);
}

std::string sentence(const std::string& name, const Band& band, std::string_view unit,
                     const std::string& behind = "") {
    const std::string text = band_text(band, unit);
    if (std::isnan(band.lower) && std::isnan(band.upper)) return name + ": " + text;
    return name + ": " + text + behind + " (90 %)";
}

class Words {
  public:
    Words(const Workspace& workspace, const Ensemble& ensemble, std::span<const ModelVariant> variants)
        : workspace_(workspace), ensemble_(ensemble), variants_(variants) {}

    std::vector<std::string> all();

  private:
    std::optional<std::size_t> index_of(std::int32_t body, int param_code) const;
    Band band_of(const std::vector<double>& values) const;
    bool is_found(const EnsembleParameter& strike) const;
    std::string parameter_words(std::size_t i) const;
    Band burial(std::size_t top) const;
    void add_products();
    void add_variants();

    const Workspace& workspace_;
    const Ensemble& ensemble_;
    std::span<const ModelVariant> variants_;
    std::vector<std::string> words_;
};

std::optional<std::size_t> Words::index_of(std::int32_t body, int param_code) const {
    for (std::size_t i = 0; i < ensemble_.parameters.size(); ++i)
        if (ensemble_.parameters[i].body == body && ensemble_.parameters[i].param_code == param_code)
            return i;
    return {};
}

Band Words::band_of(const std::vector<double>& values) const {
    std::vector<double> own = values;
    return {quantile(own, 0.05), quantile(own, 0.95)};
}

/// Depths of the top below the ground over it, in each model; where no ground is known, below the sensor.
Band Words::burial(std::size_t top) const {
    const EnsembleParameter& parameter = ensemble_.parameters[top];
    const std::optional<std::size_t> distance = index_of(parameter.body, param_distance);
    const StationColumn column = model::ground_is_known(workspace_) ? column_ground : column_sensor;
    std::vector<double> depths;
    for (const EnsembleSample& sample : ensemble_.samples) {
        const auto there = static_cast<double>(sample.values[top]);
        if (std::isnan(there)) continue;
        const auto place = static_cast<double>(distance ? sample.values[*distance]
                                                        : workspace_.body(parameter.body).distance.value);
        depths.push_back(elevation_at(workspace_, place, column) - there);
    }
    Band band = band_of(depths);
    if (std::isnan(parameter.upper)) band.lower = open;
    if (std::isnan(parameter.lower)) band.upper = open;
    return band;
}

/// The data tell more of a strike than was known before.
bool Words::is_found(const EnsembleParameter& strike) const {
    constexpr double much_less = 0.7, of_even_chance = 0.9;
    return strike.upper - strike.lower < much_less * of_even_chance * 2 * ensemble_.strike_within;
}

std::string Words::parameter_words(std::size_t i) const {
    const EnsembleParameter& parameter = ensemble_.parameters[i];
    const std::int32_t type = workspace_.body(parameter.body).type;
    const std::string name = name_of(type, parameter.param_code) + of_body(parameter.body);
    if (parameter.param_code == param_top)
        return sentence(name, burial(i), "m",
                        model::ground_is_known(workspace_) ? " below ground" : " below the sensor");
    return sentence(name, {parameter.lower, parameter.upper},
                    body_parameter(parameter.param_code).grid.unit.of(type));
}

/// Of a body that is thin beside its depth the data tell the product alone.
void Words::add_products() {
    for (std::size_t width = 0; width < ensemble_.parameters.size(); ++width) {
        const EnsembleParameter& parameter = ensemble_.parameters[width];
        const std::int32_t type = workspace_.body(parameter.body).type;
        if (parameter.param_code != param_width || type == pipe || type == wire) continue;
        if (std::isfinite(parameter.lower) && std::isfinite(parameter.upper)) continue;
        for (const int code : {param_susc, param_density}) {
            const std::optional<std::size_t> amplitude = index_of(parameter.body, code);
            if (!amplitude) continue;
            std::vector<double> products;
            for (const EnsembleSample& sample : ensemble_.samples) {
                const double product = static_cast<double>(sample.values[width]) *
                                       static_cast<double>(sample.values[*amplitude]);
                if (!std::isnan(product)) products.push_back(code == param_susc ? 1e-6 * product : product);
            }
            words_.push_back(sentence(
                "Width times " + std::string(code == param_susc ? "susceptibility" : "density contrast") +
                    of_body(parameter.body),
                band_of(products), code == param_susc ? "m SI" : "m g/cc"));
        }
    }
}

void Words::add_variants() {
    const auto count_without = [this](std::int32_t body) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < ensemble_.parameters.size(); ++i) {
            if (ensemble_.parameters[i].body != body) continue;
            for (const EnsembleSample& sample : ensemble_.samples) count += std::isnan(sample.values[i]);
            break;
        }
        return count;
    };
    for (const ModelVariant& variant : variants_) {
        if (variant.missing_body != 0) {
            const std::size_t count = count_without(variant.missing_body);
            if (count > 0)
                words_.push_back(std::to_string(count) + " of " + std::to_string(ensemble_.samples.size()) +
                                 " models do without body " + std::to_string(variant.missing_body));
        } else if (variant.criterion < variants_.front().criterion - strong_evidence) {
            for (std::size_t c = 0; c < variant.degrees.size(); ++c)
                if (variant.degrees[c] != variants_.front().degrees[c])
                    words_.push_back("A regional of degree " + std::to_string(variant.degrees[c]) +
                                     " explains the line better than the one that is chosen");
        }
    }
    if (ensemble_.strike_within > 0)
        words_.push_back("Strikes were let vary by " +
                         text_of_worth(ensemble_.strike_within, ensemble_.strike_within) + "° to each side");
}

std::vector<std::string> Words::all() {
    const auto& drawn = variants_.front().drawn;
    for (std::size_t i = 0; i < ensemble_.parameters.size(); ++i)
        if (!drawn[i] || is_found(ensemble_.parameters[i])) words_.push_back(parameter_words(i));
    add_products();
    add_variants();
    return std::move(words_);
}

}  // namespace

std::vector<std::string> ensemble_words(const Workspace& workspace, const Ensemble& ensemble,
                                        std::span<const ModelVariant> variants) {
    return Words(workspace, ensemble, variants).all();
}

}  // namespace anomalis::inversion
