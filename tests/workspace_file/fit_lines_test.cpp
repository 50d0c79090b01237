#include "workspace_file/fit_lines.h"

#include <gtest/gtest.h>
#include <random>

#include "axm_samples.h"
#include "support/fit_records.h"

namespace anomalis::workspace_file {
namespace {

/// A workspace read from a file, with a fit of it.
struct FittedFile : Reading {
    FittedFile() {
        EXPECT_EQ(read_lines(whole_file(2)), 0);
        workspace.body(1).top.value = 144.29876F;
        plain = model_parameters_text(0, workspace);
        workspace.fit = sample_fit(workspace);
        text = model_parameters_text(0, workspace);
    }
    /// The file with the first `from` behind the record's first line as `to`.
    std::string with(const std::string& from, const std::string& to) const {
        std::string changed = text;
        return changed.replace(changed.find(from, changed.find("\nfit ")), from.size(), to);
    }
    std::string plain, text;
};

}  // namespace

TEST(FitLines, a_record_comes_back_to_the_bit) {
    FittedFile file;
    Reading again;
    ASSERT_EQ(again.read_text(file.text), 0);
    EXPECT_TRUE(again.prompts.messages.empty());
    ASSERT_TRUE(again.workspace.fit);
    expect_same(*again.workspace.fit, *file.workspace.fit);
    EXPECT_TRUE(as_fitted(again.workspace));
    EXPECT_EQ(model_parameters_text(0, again.workspace), file.text);
}

TEST(FitLines, a_record_of_a_model_that_was_changed_is_not_written_until_the_model_is_back) {
    FittedFile file;
    const float top = file.workspace.body(1).top.value;
    file.workspace.body(1).top.value = 150;
    EXPECT_EQ(model_parameters_text(0, file.workspace).find("fit"), std::string::npos);
    file.workspace.body(1).top.value = top;
    EXPECT_EQ(model_parameters_text(0, file.workspace), file.text);
}

TEST(FitLines, a_file_whose_model_was_changed_drops_the_record_and_says_so) {
    FittedFile file;
    std::string changed = file.text;
    ASSERT_NE(changed.find(" 144.2988 "), std::string::npos);
    changed.replace(changed.find(" 144.2988 "), 10, " 150.2988 ");
    Reading again;
    ASSERT_EQ(again.read_text(changed), 0);
    EXPECT_FALSE(again.workspace.fit);
    EXPECT_TRUE(again.prompts.told("the record of the last fit is that of another model and was dropped"));
}

TEST(FitLines, any_damage_drops_the_record_says_so_and_leaves_the_model) {
    FittedFile file;
    const std::size_t first = file.text.find("fit 1");
    std::mt19937 random(7);
    for (int trial = 0; trial < 60; ++trial) {
        std::string damaged = file.text;
        const std::size_t at = first + random() % (damaged.size() - first - 2);
        if (damaged[at] == '\r' || damaged[at] == '\n') continue;
        if (trial % 2 == 0) {
            damaged[at] = damaged[at] == '7' ? '8' : '7';
        } else {
            damaged.resize(at);
        }
        Reading again;
        ASSERT_EQ(again.read_text(damaged), 0);
        EXPECT_FALSE(again.workspace.fit) << at;
        EXPECT_EQ(again.workspace.body_count, 2);
        EXPECT_EQ(model_parameters_text(0, again.workspace), file.plain);
        // Nothing is left to speak of when even the name of its first line is gone.
        if (at >= first + 3) {
            EXPECT_TRUE(again.prompts.told("the record of the last fit is damaged and was dropped")) << at;
        }
    }
}

TEST(FitLines, lines_that_are_right_by_their_digest_must_still_make_sense) {
    FittedFile file;
    const std::vector<std::string> lines = fit_lines(*file.workspace.fit);
    const auto refused = [](FitRecord record) {
        const std::vector<std::string> text = fit_lines(record);
        return !fit_of_lines({text.begin(), text.end()}).has_value();
    };
    EXPECT_FALSE(refused(*file.workspace.fit));
    FitRecord record = *file.workspace.fit;
    record.mag->regional.degree = 4;
    EXPECT_TRUE(refused(record));
    record = *file.workspace.fit;
    record.mag->regional.half_width = 0;
    EXPECT_TRUE(refused(record));
    record = *file.workspace.fit;
    record.parameters[1].param_code = 99;
    EXPECT_TRUE(refused(record));
    record = *file.workspace.fit;
    record.first_distance = FittedParameter::open;
    EXPECT_TRUE(refused(record));
    EXPECT_FALSE(fit_of_lines({}));
}

TEST(FitLines, a_record_of_nothing_but_defaults_comes_back) {
    const FitRecord empty;
    const std::vector<std::string> text = fit_lines(empty);
    const auto again = fit_of_lines({text.begin(), text.end()});
    ASSERT_TRUE(again);
    expect_same(*again, empty);
}

TEST(FitLines, a_matrix_that_would_outgrow_the_model_is_left_out) {
    FitRecord record;
    record.parameters.assign(most_correlated + 1, {1, param_top, 1, 1, 0, 2, false, false});
    record.correlation.assign(record.parameters.size() * record.parameters.size(), 0.5);
    const std::vector<std::string> text = fit_lines(record);
    const auto again = fit_of_lines({text.begin(), text.end()});
    ASSERT_TRUE(again);
    EXPECT_EQ(again->parameters.size(), record.parameters.size());
    EXPECT_TRUE(again->correlation.empty());
}

TEST(FitLines, reading_definitions_alone_brings_no_record_and_no_words_of_it) {
    FittedFile file;
    Reading again;
    ASSERT_EQ(again.read_text(file.text, -1), 0);
    EXPECT_FALSE(again.workspace.fit);
    EXPECT_TRUE(again.prompts.messages.empty());
}

TEST(FitLines, a_file_without_a_record_ends_the_one_before) {
    FittedFile file;
    ASSERT_EQ(file.read_text(file.plain), 0);
    EXPECT_FALSE(file.workspace.fit);
}

}  // namespace anomalis::workspace_file
