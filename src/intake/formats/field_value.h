#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "intake/formats/survey_layout.h"

// What one field of a row says.
namespace anomalis::intake {

/// Without blanks and tabs at both ends.
std::string_view trim_field(std::string_view text);

/// What people and programs write where they have no value: nothing, "*", "NaN", "N/A", "-", "1.#QNAN",
/// asterisks of a field that was too narrow. The text is trimmed.
bool is_null_text(std::string_view text);

/// A trimmed text as a number; with `decimal_comma` the comma stands where else the point does. Numbers of
/// Fortran with a D before the exponent are read too.
bool read_number(std::string_view text, bool decimal_comma, double& value);

/// Degrees from a number with a letter of its hemisphere ("32.5S"), or as `read_degree_minutes` does where
/// minutes stand apart.
bool read_degrees(std::string_view text, bool decimal_comma, double& degrees);

/// Degrees from "140 49 59.8", "140:49:59.8", "140d49m59.8s", "140°49'59.8\"S" or DDMM.mmm, with a sign or a
/// letter N, S, E, W at either end.
bool read_degree_minutes(std::string_view text, bool decimal_comma, double& degrees);

/// Whether a text has degrees and minutes apart from each other, which no plain number has.
bool is_degree_minutes(std::string_view text);

/// The date as a decimal year, from "1990-07-01", "1990/07/01", "01/07/1990" (the day first, where it can
/// be), "1-Jul-1990", 19900701, 900701, 01071990, a decimal year, or any of these with a time behind it.
std::optional<double> read_date(std::string_view text);

/// The values that stand for none in a column. A null of nines alone, such as -99999, holds for its decimals
/// as well: -99999.99. What is beyond 1e30 is none in any case.
class NullValues {
  public:
    explicit NullValues(const std::vector<double>& nulls);

    bool hold(double value) const {
        // Nearly every reading lies between the nulls on either side of zero.
        return !(value > below_ && value < above_) && look_up(value);
    }

  private:
    struct Range {
        double least, greatest;
    };
    bool look_up(double value) const;

    std::vector<Range> ranges_;
    double below_, above_;  ///< no null in between
};

/// The same for one value.
bool is_null_value(double value, const std::vector<double>& nulls);

}  // namespace anomalis::intake
