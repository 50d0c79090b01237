#pragma once

#include <string_view>
#include <vector>

#include "intake/formats/survey_layout.h"

// Which role a column's name stands for, in the spellings of many surveys.
namespace anomalis::intake {

/// How well a name fits a role: 0 not at all, 100 beyond doubt. Among magnetic channels the more corrected
/// one is worth more, among gravity the Bouguer anomaly before free air before observed gravity.
int role_worth(Role role, const SurveyColumn& column);

struct RoleBid {
    Role role = Role::none;
    std::size_t column = 0;
    int worth = 0;
};

/// The columns whose names fit a role, the best first.
std::vector<RoleBid> role_bids(Role role, const SurveyLayout& layout);

}  // namespace anomalis::intake
