#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "batch/option_list.h"
#include "core/formulas.h"
#include "field/main_field.h"
#include "flow/fit_window.h"

// Values that options of several commands have in common.
namespace anomalis::batch {

/// A whole number such as 25 or 1e3, at least `least`; above `most` it is `most`.
OptionList::Take take_count(int& value, int least, int most);
/// The same, for an option that need not be there.
OptionList::Take take_count(std::optional<int>& value, int least, int most);
/// "none" (`no_regional`) or a degree.
OptionList::Take take_regional(std::optional<std::int32_t>& degree);
/// Above 0, in `unit`.
OptionList::Take take_noise(std::optional<float>& noise, const std::string& unit);

/// A file to write; a single "-", the way pipelines name the standard output, is "".
OptionList::Take take_stream(std::string& path, const std::string& ending);
inline constexpr const char* stream_purpose = "Write it here; - is the standard output";

/// "A:B", m along the profile, A below B.
OptionList::Take take_window(std::optional<flow::DistanceWindow>& window);

/// "LAT,LON" or "LAT,LON,HEIGHT_M": three numbers, whatever they are.
OptionList::Take take_place(field::Place& place);

/// "1990-07-01" or a decimal year.
OptionList::Take take_date(double& year);

/// What all commands have in common.
struct CommonOptions {
    std::optional<Formulas> formulas;  ///< in place of what the file says
    bool keep_going = false;
};
void add_common_options(OptionList& options, CommonOptions& common);

/// The options by which a fit is told regional and noises.
struct FitChoice {
    std::optional<std::int32_t> regional;        ///< of what is fitted; no value: what the workspace says
    std::optional<float> mag_noise, grav_noise;  ///< nT, mGal; no value: what the workspace says
};
void add_fit_choice(OptionList& options, FitChoice& choice);

}  // namespace anomalis::batch
