#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "edit/change.h"
#include "edit/line_sample.h"

namespace anomalis::flow {

/// Works on a model by seeded random actions, as someone in a hurry would: keyed settings, loads, bodies,
/// files, and steps back and forward between them. After each step everything derived is compared with a
/// fresh load of the same state.
class HistoryWalk {
  public:
    explicit HistoryWalk(std::uint32_t seed);

    /// Takes so many actions; the first broken law with the actions that led to it, or "".
    std::string run(int actions);
    int steps_compared() const { return steps_compared_; }

  private:
    int pick(int count) { return static_cast<int>(random_() % static_cast<std::uint32_t>(count)); }
    void act();
    void key_setting();
    void choose_setting();
    void key_definition();
    void change_parameter();
    void change_marks();
    void change_list();
    void change_window();
    void change_file();
    void display();
    void load();
    void step();

    edit::LineSample sample_;
    std::mt19937 random_;
    std::string other_data_, model_path_, did_, broken_;
    int steps_compared_ = 0;
};

}  // namespace anomalis::flow
