#include "core/settings_file.h"

#include <gtest/gtest.h>

#include "core/failure.h"

namespace anomalis {
namespace {

std::string failure_of(std::string_view text) {
    try {
        (void)parse_settings(text);
    } catch (const Fault& fault) {
        return fault.what();
    }
    return "";
}

TEST(SettingsText, comes_back_as_it_was) {
    std::string every_byte;
    for (int i = 0; i < 256; ++i) every_byte += static_cast<char>(i);
    SettingsTable values;
    values[{0, "Brightfold", ""}]["UseHKCU"] = "";
    values[{1, "Brightfold", "Anomalis"}]["Dip"] = " 45 ";
    values[{1, every_byte, every_byte}][every_byte] = every_byte;
    values[{0, "a", "b"}][""] = "no name";
    EXPECT_EQ(parse_settings(settings_text(values)), values);
}

TEST(SettingsText, reads_well) {
    SettingsTable values;
    values[{0, "Brightfold", "Anomalis"}]["Dip"] = "45.0";
    EXPECT_NE(settings_text(values).find("\n[0 Brightfold/Anomalis]\nDip=45.0\n"), std::string::npos);
}

TEST(ParseSettings, takes_comments_blank_lines_and_both_line_ends) {
    const SettingsTable values = parse_settings(
        "# a comment\r\n\r\n[1 Brightfold/Anomalis]\r\nDip=45\r\n# more\nDip=50\nThick==\n\nLast=1");
    const auto& keys = values.at({1, "Brightfold", "Anomalis"});
    EXPECT_EQ(keys.at("Dip"), "50");
    EXPECT_EQ(keys.at("Thick"), "=");
    EXPECT_EQ(keys.at("Last"), "1");
}

TEST(ParseSettings, names_the_first_line_that_is_no_setting) {
    EXPECT_EQ(failure_of("Dip=45\n"), "line 1 is not a setting") << "no section yet";
    EXPECT_EQ(failure_of("\n[2 Brightfold/Anomalis]\n"), "line 2 is not a setting");
    EXPECT_EQ(failure_of("[0 Brightfold]\n"), "line 1 is not a setting");
    EXPECT_EQ(failure_of("[0 Brightfold/Anomalis\n"), "line 1 is not a setting");
    EXPECT_EQ(failure_of("[0]\n"), "line 1 is not a setting");
    EXPECT_EQ(failure_of("[0 a/b]\nDip\n"), "line 2 is not a setting");
    EXPECT_EQ(failure_of("[0 a/b]\nDip=\\\n"), "line 2 is not a setting");
    EXPECT_EQ(failure_of("[0 a/b]\nDip=\\x4\n"), "line 2 is not a setting");
    EXPECT_EQ(failure_of("[0 a/b]\nDip=\\xgg\n"), "line 2 is not a setting");
    EXPECT_EQ(failure_of(std::string_view("[0 a/b]\nDip=\0\n", 14)), "line 2 is not a setting");
}

}  // namespace
}  // namespace anomalis
