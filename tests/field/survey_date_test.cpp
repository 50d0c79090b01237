#include <gtest/gtest.h>

#include "core/failure.h"
#include "field/main_field.h"

namespace anomalis::field {
namespace {

TEST(SurveyDate, a_day_is_its_share_of_the_year) {
    EXPECT_DOUBLE_EQ(year_of_date("1990-01-01"), 1990);
    EXPECT_DOUBLE_EQ(year_of_date("1990-07-01"), 1990 + 181.0 / 365);
    EXPECT_DOUBLE_EQ(year_of_date("2000-12-31"), 2000 + 365.0 / 366);
    EXPECT_DOUBLE_EQ(year_of_date(" 1990/7/1 "), 1990 + 181.0 / 365);
    EXPECT_DOUBLE_EQ(year_of_date("19900701"), 1990 + 181.0 / 365);
}

TEST(SurveyDate, a_decimal_year_is_itself) {
    EXPECT_DOUBLE_EQ(year_of_date("1990"), 1990);
    EXPECT_DOUBLE_EQ(year_of_date("1990.5"), 1990.5);
}

TEST(SurveyDate, what_is_no_date_is_refused) {
    for (const char* text : {"", "July", "1990-02-30", "1990-13-01", "1990-1", "90-07-01", "01-07-1990",
                             "1990-07-01x", "1990--1", "-1990", "0", "nan", "1e9", "19901301"})
        EXPECT_THROW(year_of_date(text), Fault) << text;
}

}  // namespace
}  // namespace anomalis::field
