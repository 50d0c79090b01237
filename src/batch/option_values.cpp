#include "batch/option_values.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/regional.h"
#include "core/text.h"

namespace anomalis::batch {

namespace {

template <class Count>
OptionList::Take count_taker(Count& value, int least, int most) {
    return {[&value, least, most](const std::string& text) -> std::string {
                double number = 0;
                if (!parse_number(text, number)) return "is not a number: " + text;
                if (number != std::floor(number) || number < least)
                    return "must be a whole number, at least " + std::to_string(least) + ": " + text;
                value = static_cast<int>(std::min<double>(number, most));
                return {};
            },
            manual::word("N")};
}

}  // namespace

OptionList::Take take_count(int& value, int least, int most) {
    return count_taker(value, least, most);
}

OptionList::Take take_count(std::optional<int>& value, int least, int most) {
    return count_taker(value, least, most);
}

OptionList::Take take_regional(std::optional<std::int32_t>& degree) {
    return {[&degree](const std::string& text) -> std::string {
                double value = no_regional;
                const bool known =
                    text == "none" || (parse_number(text, value) && value >= 0 &&
                                       value <= most_regional_degree && value == std::floor(value));
                if (!known) return "must be none, 0 (level), 1 (slope), 2 (bend) or 3 (cubic): " + text;
                degree = static_cast<std::int32_t>(value);
                return {};
            },
            manual::one_of({"none", "0", "1", "2", "3"}, "DEGREE")};
}

OptionList::Take take_noise(std::optional<float>& noise, const std::string& unit) {
    return {[&noise, unit](const std::string& text) -> std::string {
                const std::optional<float> value = parse_single(text);
                if (!value || !(*value > 0)) return "must be a number of " + unit + " above 0: " + text;
                noise = value;
                return {};
            },
            manual::word("SD")};
}

OptionList::Take take_stream(std::string& path, const std::string& ending) {
    return {[&path](const std::string& text) -> std::string {
                path = text == "-" ? "" : text;
                return {};
            },
            manual::file("FILE", {ending})};
}

OptionList::Take take_window(std::optional<flow::DistanceWindow>& window) {
    return {[&window](const std::string& text) -> std::string {
                const std::size_t colon = text.find(':');
                flow::DistanceWindow read;
                const bool two = colon != std::string::npos &&
                                 parse_number(text.substr(0, colon), read.first) &&
                                 parse_number(text.substr(colon + 1), read.last);
                if (!two || !(read.first < read.last))
                    return "must be A:B in m along the profile, A below B: " + text;
                window = read;
                return {};
            },
            manual::word("A:B")};
}

OptionList::Take take_place(field::Place& place) {
    return {[&place](const std::string& text) -> std::string {
                field::Place read;
                std::string_view rest = text;
                bool whole = next_number(rest, read.latitude) && next_number(rest, read.longitude);
                if (whole && !rest.empty()) whole = next_number(rest, read.height_m) && rest.empty();
                if (!whole)
                    return "must be LAT,LON,HEIGHT_M in degrees and m, such as -22.1,140.5,350: " + text;
                place = read;
                return {};
            },
            manual::word("LAT,LON[,HEIGHT_M]")};
}

OptionList::Take take_date(double& year) {
    return {[&year](const std::string& text) -> std::string {
                try {
                    year = field::year_of_date(text);
                    return {};
                } catch (const Fault& fault) {
                    return fault.what();
                }
            },
            manual::word("DATE")};
}

void add_common_options(OptionList& options, CommonOptions& common) {
    options.taken("--formulas",
                  {[&common](const std::string& choice) -> std::string {
                       common.formulas = formulas_of_name(choice);
                       return common.formulas ? "" : "must be classic or exact: " + choice;
                   },
                   manual::one_of({"classic", "exact"}, "")},
                  "classic or exact, in place of what the workspace file says");
    options.flag("--keep-going", common.keep_going,
                 "Count as done what was written although something failed on the way; tables and reports "
                 "say what");
}

void add_fit_choice(OptionList& options, FitChoice& choice) {
    options.taken("--regional", take_regional(choice.regional),
                  "Polynomial that is fitted with the bodies: none, 0 (level), 1 (slope), 2 (bend) or 3 "
                  "(cubic); otherwise that of the workspace");
    options.taken("--noise-mag", take_noise(choice.mag_noise, "nT"),
                  "Standard deviation of a magnetic reading, nT; otherwise that of the workspace, or "
                  "estimated");
    options.taken("--noise-grav", take_noise(choice.grav_noise, "mGal"),
                  "The same of a gravity reading, mGal");
}

}  // namespace anomalis::batch
