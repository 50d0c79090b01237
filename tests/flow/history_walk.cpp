#include "flow/history_walk.h"

#include <array>

#include "core/numbers.h"
#include "edit/add_bodies.h"
#include "edit/body_flags.h"
#include "edit/body_form.h"
#include "edit/body_grid.h"
#include "edit/body_list.h"
#include "edit/definition_boxes.h"
#include "edit/parameter_bars.h"
#include "edit/settings_boxes.h"
#include "edit/transform_change.h"
#include "flow/open_flow.h"
#include "flow/save_flow.h"
#include "model/refresh_model.h"
#include "support/fresh_load.h"

namespace anomalis::flow {

namespace {

constexpr std::array<const char*, 12> keyed_texts{"0",  "1",  "2.5",  "5",     "12",    "30",
                                                  "-3", "60", "1000", "50000", "51234", ""};
constexpr std::array<const char*, 6> keyed_columns{"0", "2", "3", "4", "6", "7"};
constexpr std::array<const char*, 5> keyed_spacings{"0", "7", "10", "40", "0.1"};
constexpr std::array<std::int32_t, 6> types{thin_sheet, thick_sheet, edge, sphere, pipe, wire};

}  // namespace

HistoryWalk::HistoryWalk(std::uint32_t seed)
    : random_(seed),
      other_data_(sample_.folder.write("other.dat", edit::east_line_text(61))),
      model_path_(sample_.folder.path("model.axm")) {
    sample_.workspace().definition.first_data_line = 2;
    for (std::size_t i = 0; i < types.size(); ++i)
        sample_.add_body(300.0 * static_cast<double>(i + 1), 60, types.at(i));
    edit::start_history(sample_.workbench);
}

void HistoryWalk::key_setting() {
    const auto box =
        static_cast<edit::SettingsBox>(pick(static_cast<int>(edit::SettingsBox::finite_body_right_clip) + 1));
    const char* text = keyed_texts.at(static_cast<std::size_t>(pick(keyed_texts.size())));
    did_ += "box " + std::to_string(static_cast<int>(box)) + "=" + text;
    edit::change_settings_box(sample_.workbench, box, text);
}

void HistoryWalk::choose_setting() {
    edit::Workbench& bench = sample_.workbench;
    const int what = pick(7);
    did_ += "choice " + std::to_string(what);
    switch (what) {
        case 0:
            return edit::change_smooth_filter_type(bench, pick(5));
        case 1:
            return edit::change_total_gradient(bench, pick(2) == 0);
        case 2: {
            PointTransform transform = sample_.workspace().transform;
            transform.rotation = 15.0 * pick(3);
            edit::change_transform(bench, transform);
            return;
        }
        case 3: {
            Formulas& formulas = sample_.workspace().formulas;
            formulas = formulas == Formulas::classic ? Formulas::exact : Formulas::classic;
            return edit::note_change(bench, {"formulas", "", false});
        }
        case 4:
            sample_.workspace().channel(pick(2)).regional_degree = pick(most_regional_degree + 2) - 1;
            return edit::note_change(bench, {"regional", "", false});
        case 5:
            sample_.workspace().channel(pick(2)).noise = pick(2) == 0 ? unset : 2.5F;
            return edit::note_change(bench, {"noise", "", false});
        default:
            edit::change_float_base(bench, pick(2), pick(2) == 0);
    }
}

void HistoryWalk::key_definition() {
    const int box = pick(6);
    const std::array boxes{edit::DefinitionBox::z_column,        edit::DefinitionBox::dtm_column,
                           edit::DefinitionBox::grav_column,     edit::DefinitionBox::mag_column,
                           edit::DefinitionBox::station_spacing, edit::DefinitionBox::min_station_spacing};
    const char* text = box >= 4 ? keyed_spacings.at(static_cast<std::size_t>(pick(keyed_spacings.size())))
                                : keyed_columns.at(static_cast<std::size_t>(pick(keyed_columns.size())));
    did_ += "definition " + std::to_string(box) + "=" + text;
    edit::change_definition_box(sample_.workbench, boxes.at(static_cast<std::size_t>(box)), text);
}

void HistoryWalk::change_parameter() {
    const auto bars = edit::parameter_bars();
    const edit::ParameterBar& bar = bars[static_cast<std::size_t>(pick(static_cast<int>(bars.size())))];
    sample_.workbench.view.current_body = 1 + pick(std::max(sample_.workspace().body_count, 1));
    if (pick(2) == 0) {
        did_ += "bar " + std::to_string(bar.code);
        edit::step_parameter(sample_.workbench, bar, pick(2) == 0, pick(2) * 2 - 1);
    } else {
        const std::string text = std::to_string(pick(90)) + ".5";
        did_ += "key " + std::to_string(bar.code) + "=" + text;
        edit::enter_grid_text(sample_.workbench, bar.code, edit::grid_value, text);
    }
}

void HistoryWalk::change_marks() {
    edit::Workbench& bench = sample_.workbench;
    const int what = pick(6);
    did_ += "mark " + std::to_string(what);
    switch (what) {
        case 0:
            edit::change_body_type(bench, types.at(static_cast<std::size_t>(pick(types.size()))));
            return;
        case 1:
            edit::change_body_turned_off(bench, pick(2) == 0);
            return;
        case 2:
            edit::change_body_demagnetisation(bench, pick(2) == 0);
            return;
        case 3:
            edit::change_body_name(bench, std::to_string(pick(9)));
            return;
        case 4:
            edit::change_pipe_box(bench, edit::PipeBox::sectors, std::to_string(8 + 2 * pick(3)));
            return;
        default:
            edit::set_body_flags(bench, edit::BodyFlag::use,
                                 pick(3) == 0 ? edit::FlagSetting::flip : edit::FlagSetting::on);
    }
}

void HistoryWalk::change_list() {
    edit::Workbench& bench = sample_.workbench;
    const int what = pick(8);
    did_ += "list " + std::to_string(what);
    switch (what) {
        case 0:
        case 1:
        case 2:
            if (sample_.workspace().body_count < 10)
                edit::add_body_from_menu(bench, static_cast<edit::AddMode>(what));
            return;
        case 3:
        case 4:
            edit::delete_current_body(bench);
            return;
        case 5:
            if (pick(4) == 0) edit::delete_all_bodies(bench);
            return;
        default:
            edit::sort_bodies(bench, static_cast<edit::BodyOrder>(pick(4)));
    }
}

/// As the limit bars do it.
void HistoryWalk::change_window() {
    Workspace& w = sample_.workspace();
    if (!edit::line_loaded(w) || w.station_count < 4) return;
    did_ += "window";
    w.first_station = 1 + pick(w.station_count / 2);
    w.last_station = w.first_station + 1 + pick(w.station_count - w.first_station);
    w.first_distance = w.distances[w.first_station];
    w.last_distance = w.distances[w.last_station];
    edit::note_change(sample_.workbench, {"stations of the fit", "", false});
}

void HistoryWalk::change_file() {
    edit::Workbench& bench = sample_.workbench;
    const int what = pick(4);
    did_ += "file " + std::to_string(what);
    switch (what) {
        case 0:
            set_data_file(bench, pick(2) == 0 ? other_data_ : sample_.data_path);
            return;
        case 1:
            sample_.workspace().model_file = model_path_;
            save_model(SaveMode::to_model_file, bench, {});
            return;
        case 2:
            open_model_file(bench, ReadMode::everything, model_path_);
            return;
        default:
            open_model_file(bench, ReadMode::bodies_alone, model_path_);
    }
}

/// A page that is not on show is not brought up to date.
void HistoryWalk::display() {
    did_ += "display";
    if (edit::line_loaded(sample_.workspace())) model::refresh_model(sample_.session);
}

void HistoryWalk::load() {
    did_ += "load";
    load_line(sample_.workbench);
}

void HistoryWalk::step() {
    edit::Workbench& bench = sample_.workbench;
    const bool back = pick(3) != 0;
    did_ += back ? "undo" : "redo";
    const edit::HistoryStep step = back ? edit::undo_change(bench) : edit::redo_change(bench);
    if (step.line_wanted) load();
    if (!step.moved || !edit::line_loaded(sample_.workspace())) return;
    sample_.prompts.messages.clear();
    model::refresh_model(sample_.session);
    model::refresh_model(sample_.session);
    ++steps_compared_;
    broken_ = difference_from_fresh_load(sample_.workspace());
}

void HistoryWalk::act() {
    const int what = pick(24);
    if (what < 8) return step();
    if (what < 10) return load();
    if (what < 12) return key_setting();
    if (what < 14) return choose_setting();
    if (what < 16) return change_parameter();
    if (what < 17) return change_marks();
    if (what < 19) return change_list();
    if (what < 20) return change_window();
    if (what < 21) return key_definition();
    if (what < 22) return change_file();
    display();
}

std::string HistoryWalk::run(int actions) {
    for (int i = 0; i < actions && broken_.empty(); ++i) {
        act();
        did_ += "; ";
    }
    constexpr std::size_t told = 2000;
    return broken_.empty() ? ""
                           : broken_ + " after " + did_.substr(did_.size() - std::min(did_.size(), told));
}

}  // namespace anomalis::flow
