#pragma once

#include <memory>

namespace anomalis::intake {
struct LoadReport;
}  // namespace anomalis::intake

namespace anomalis::edit {

/// What is known of the line beside its numbers.
struct LineReports {
    std::shared_ptr<const intake::LoadReport> load;  ///< of the last load; null before
    std::shared_ptr<const intake::LoadReport>
        imported;  ///< of the import that made its data file; may be null
};

}  // namespace anomalis::edit
