#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fit_record.h"

// The record of the last fit as lines `name value` of a workspace file. Private to this room.
namespace anomalis::workspace_file {

/// The correlations of more parameters than this are not kept: the matrix would outgrow the model.
inline constexpr std::size_t most_correlated = 200;

/// The lines of a record, in their order. Numbers read back as the very same; one that is open is the word
/// "open". The last line holds a digest of those before it.
std::vector<std::string> fit_lines(const FitRecord& record);

/// Whether an entry belongs to the record.
bool is_fit_entry(std::string_view name);

/// The record of such lines; no value when one is missing, too many or not as it was written.
std::optional<FitRecord> fit_of_lines(const std::vector<std::string_view>& lines);

}  // namespace anomalis::workspace_file
