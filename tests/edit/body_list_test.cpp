#include "edit/body_list.h"

#include <gtest/gtest.h>

#include "edit/body_sample.h"

namespace anomalis::edit {

namespace {

std::vector<float> distances(BodySample& sample) {
    std::vector<float> result;
    for (int i = 1; i <= sample.workspace().body_count; ++i) result.push_back(sample.body(i).distance.value);
    return result;
}

using Distances = std::vector<float>;

}  // namespace

TEST(BodyList, deleting_the_current_body_moves_the_later_ones_down) {
    BodySample sample;
    for (int i = 1; i <= 3; ++i) sample.body(i).response(7, 2) = static_cast<float>(i);
    EXPECT_TRUE(delete_current_body(sample.workbench));
    EXPECT_EQ(distances(sample), (Distances{500, 1900}));
    EXPECT_EQ(sample.workbench.view.current_body, 2);
    EXPECT_EQ(sample.body(2).response(7, 2), 3);
    EXPECT_EQ(sample.cleared(1), Cleared(false, false)) << "the others are what they were";
    EXPECT_TRUE(sample.changed());
    EXPECT_TRUE(sample.prompts.questions.empty());
}

TEST(BodyList, deleting_the_last_body_makes_the_one_before_it_current) {
    BodySample sample;
    sample.workbench.view.current_body = 3;
    EXPECT_TRUE(delete_current_body(sample.workbench));
    EXPECT_EQ(distances(sample), (Distances{500, 1200}));
    EXPECT_EQ(sample.workbench.view.current_body, 2);
}

TEST(BodyList, deleting_the_only_body_empties_the_list) {
    BodySample sample;
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(delete_current_body(sample.workbench));
    EXPECT_EQ(sample.workspace().body_count, 0);
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    sample.calm();
    EXPECT_FALSE(delete_current_body(sample.workbench));
    EXPECT_FALSE(sample.changed());
}

TEST(BodyList, deleting_all_asks_nothing) {
    BodySample sample;
    delete_all_bodies(sample.workbench);
    EXPECT_EQ(sample.workspace().body_count, 0);
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    EXPECT_TRUE(sample.changed());
    EXPECT_TRUE(sample.prompts.questions.empty());
    sample.calm();
    delete_all_bodies(sample.workbench);
    EXPECT_FALSE(sample.changed());
}

TEST(BodyList, sorting_takes_the_responses_along_and_renames_all) {
    BodySample sample;
    sample.body(1).distance.value = 2000;
    sample.body(1).name = "Main dyke";
    for (int i = 1; i <= 3; ++i) sample.body(i).response(3, 1) = static_cast<float>(i);
    sample.workbench.view.current_body = 1;
    EXPECT_TRUE(sort_bodies(sample.workbench, BodyOrder::ascending));
    EXPECT_EQ(distances(sample), (Distances{1200, 1900, 2000}));
    EXPECT_EQ(sample.workbench.view.current_body, 3);
    EXPECT_EQ(sample.body(3).response(3, 1), 1);
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(sample.body(i).name, "Body " + std::to_string(i));
    EXPECT_EQ(sample.prompts.messages, std::vector<std::string>{"The bodies have been sorted"});
    EXPECT_TRUE(sort_bodies(sample.workbench, BodyOrder::descending));
    EXPECT_EQ(distances(sample), (Distances{2000, 1900, 1200}));
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    EXPECT_TRUE(sample.changed());
}

TEST(BodyList, bodies_at_one_distance_keep_their_order_both_ways) {
    BodySample sample;
    for (int i = 1; i <= 3; ++i) {
        sample.body(i).distance.value = 700;
        sample.body(i).susc.value = static_cast<float>(i);
    }
    for (const auto order : {BodyOrder::ascending, BodyOrder::descending}) {
        sort_bodies(sample.workbench, order);
        for (int i = 1; i <= 3; ++i) EXPECT_EQ(sample.body(i).susc.value, i);
        EXPECT_EQ(sample.workbench.view.current_body, 2);
    }
}

TEST(BodyList, the_current_body_goes_to_either_end_with_its_name) {
    BodySample sample;
    sample.body(2).name = "Mine";
    EXPECT_TRUE(sort_bodies(sample.workbench, BodyOrder::current_first));
    EXPECT_EQ(distances(sample), (Distances{1200, 500, 1900}));
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    EXPECT_EQ(sample.body(1).name, "Mine");
    EXPECT_TRUE(sort_bodies(sample.workbench, BodyOrder::current_last));
    EXPECT_EQ(distances(sample), (Distances{500, 1900, 1200}));
    EXPECT_EQ(sample.workbench.view.current_body, 3);
    EXPECT_EQ(sample.prompts.messages,
              (std::vector<std::string>{"The body has been moved", "The body has been moved"}));
}

TEST(BodyList, sorting_nothing_tells_nothing) {
    BodySample sample(false);
    for (const auto order :
         {BodyOrder::ascending, BodyOrder::descending, BodyOrder::current_first, BodyOrder::current_last})
        EXPECT_FALSE(sort_bodies(sample.workbench, order));
    EXPECT_TRUE(sample.prompts.messages.empty());
    EXPECT_FALSE(sample.changed());
    sample.add_body(100, 10);
    sample.workbench.view.current_body = 5;
    EXPECT_FALSE(sort_bodies(sample.workbench, BodyOrder::current_first));
}

TEST(BodyList, a_shift_moves_all_bodies_along_the_line) {
    BodySample sample;
    sample.prompts.texts = {"-37.5"};
    EXPECT_TRUE(shift_bodies(sample.workbench));
    ASSERT_EQ(sample.prompts.input_boxes.size(), 1u);
    EXPECT_EQ(sample.prompts.input_boxes[0].title, "Lateral shift");
    EXPECT_EQ(sample.prompts.input_boxes[0].prompt,
              "Enter the distance along the profile that you would like to use");
    EXPECT_EQ(sample.prompts.input_boxes[0].default_text, "0");
    EXPECT_EQ(distances(sample), (Distances{462.5F, 1162.5F, 1862.5F}));
    EXPECT_DOUBLE_EQ(sample.body(3).east, 501862.5);
    EXPECT_EQ(sample.cleared(1), Cleared(true, true));
    EXPECT_TRUE(sample.changed());
}

TEST(BodyList, a_shift_of_less_than_a_metre_and_what_is_no_number_do_nothing) {
    for (const std::string& text :
         {std::string("0"), std::string("0.99"), std::string("-0.999"), std::string(), std::string("  "),
          std::string("abc"), std::string("1e999"), std::string("1e39"), std::string("12\n3"),
          std::string(10000, '5')}) {
        BodySample sample;
        sample.prompts.texts = {text};
        EXPECT_FALSE(shift_bodies(sample.workbench)) << text.substr(0, 10);
        EXPECT_EQ(distances(sample), (Distances{500, 1200, 1900}));
        EXPECT_FALSE(sample.changed());
    }
    BodySample cancelled;
    EXPECT_FALSE(shift_bodies(cancelled.workbench));
}

TEST(BodyList, every_change_of_the_list_forgets_the_run_before) {
    const auto forgets = [](auto command) {
        BodySample sample;
        sample.session.inversion.inversion_params.assign(3);
        sample.session.inversion.start_params.assign(3);
        sample.session.inversion.best_model_available = true;
        command(sample.workbench);
        return sample.session.inversion.inversion_params.count() == 0 &&
               sample.session.inversion.start_params.count() == 0 &&
               !sample.session.inversion.best_model_available;
    };
    EXPECT_TRUE(forgets([](Workbench& w) { delete_current_body(w); }));
    EXPECT_TRUE(forgets([](Workbench& w) { delete_all_bodies(w); }));
    EXPECT_TRUE(forgets([](Workbench& w) { sort_bodies(w, BodyOrder::current_last); }));
    EXPECT_TRUE(forgets([](Workbench& w) { change_body_type(w, pipe); }));
}

}  // namespace anomalis::edit
