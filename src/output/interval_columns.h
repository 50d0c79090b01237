#pragma once

#include <string>
#include <vector>

#include "core/fit_record.h"

namespace anomalis {
struct Workspace;
}

// The 90 % intervals of the last fit beside the parameters of a table. Private to this room.
namespace anomalis::output {

class CsvText;

/// The pair of columns of a parameter.
struct IntervalColumns {
    std::string name;         ///< of the parameter's own column
    std::int32_t param_code;  ///< body_parameters.h
    bool of_wires;            ///< a wire keeps its current where other bodies keep the susceptibility
};

/// Those of the parameters that were fitted and that the table has, in the order of a fit; none unless the
/// model is as fitted.
std::vector<IntervalColumns> interval_columns(const Workspace& workspace);

/// "top_elevation_m_lower_90" and "top_elevation_m_upper_90".
void add_interval_names(const std::vector<IntervalColumns>& columns, CsvText& csv);
/// The intervals of a body; a field is empty for a parameter that was not fitted and for a side that the data
/// leave open.
void add_intervals(const std::vector<IntervalColumns>& columns, const Workspace& workspace, int body,
                   CsvText& csv);

}  // namespace anomalis::output
