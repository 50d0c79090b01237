#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "flow/import_survey.h"
#include "flow/survey_reading.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// Hears of what an import shows.
class ImportDeskObserver {
  public:
    virtual ~ImportDeskObserver() = default;
    /// Another file, or another reading of its columns: preview, heads and questions are other ones.
    virtual void layout_changed() = 0;
    /// The lines are there, or gone; a reading has begun or ended.
    virtual void lines_changed() = 0;
    /// Another line is chosen, or what is said of coordinates, date and field.
    virtual void choice_changed() = 0;
    virtual void progress_changed() = 0;
    /// An imported line stands in the workbench: its data are to be loaded, and shown where there is a
    /// window.
    virtual void load_imported() = 0;
};

/// The import of a survey file as a window offers it, without a window: what was recognised, what a person
/// corrected, the lines, and the import itself. Every correction reads the lines anew.
class ImportDesk {
  public:
    ImportDesk(edit::Workbench& workbench, ImportDeskObserver& observer);

    // -- The file.

    /// Recognises a file and begins to read its lines. One that cannot be recognised is shown with its first
    /// lines and with what is missing.
    void open(const std::string& path);
    const std::string& path() const { return path_; }
    /// Null where the file could not be recognised.
    const intake::SurveyLayout* layout() const { return layout_ ? &*layout_ : nullptr; }
    const intake::SurveyPreview& preview() const { return preview_; }
    const std::vector<intake::RoleQuestion>& questions() const { return questions_; }
    /// First lines of a file that was not recognised.
    const std::vector<std::string>& head() const { return head_; }
    /// Why there are no lines, and what to do; "" where there are.
    const std::string& trouble() const { return trouble_; }

    // -- Corrections.

    /// Format, separator, decimal sign and encoding that a person says; the file is recognised anew.
    void choose_reading(const intake::ReadAs& read_as);
    const intake::ReadAs& read_as() const { return read_as_; }
    /// A role is that of one column; the one that had it has none then.
    void choose_role(std::size_t column, intake::Role role);
    void choose_unit(std::size_t column, intake::Unit unit);
    /// Values that stand for none, split by blanks; returns why the text is none, or "".
    std::string choose_nulls(std::size_t column, const std::string& text);
    /// Of the line that is imported; "" as recognised. Returns why it is none, or "".
    std::string choose_system(const std::string& text);
    std::string choose_date(const std::string& text);
    void choose_field(bool from_place);
    void choose_main_field(MainFieldChange change);

    // -- The lines.

    bool reading() const { return reading_.going_on(); }
    /// 0 to 1 of the file.
    double part_read() const;
    void stop_reading();
    /// Takes over what a reading has given; to be called now and then while one goes on.
    void poll();
    /// Waits for a reading.
    void finish_reading();
    /// Null while there is none.
    const intake::SurveyIndex* index() const { return index_.get(); }
    void choose_line(std::size_t line, std::optional<std::size_t> piece = {});
    std::optional<std::size_t> line() const { return line_; }
    std::optional<std::size_t> piece() const { return piece_; }

    // -- What is made of it.

    const ImportChoices& choices() const { return choices_; }
    const std::string& system_text() const { return system_text_; }
    const std::string& date_text() const { return choices_.date; }
    /// Where table and workspaces are left: the folder of the file until another is chosen.
    const std::string& folder() const { return folder_; }
    void choose_folder(const std::string& folder) { folder_ = folder; }
    bool all_lines() const { return all_lines_; }
    void choose_all_lines(bool all);
    bool keep_bodies() const { return keep_bodies_; }
    void choose_keep_bodies(bool keep) { keep_bodies_ = keep; }
    /// The line takes the place of the data of the open model, which keeps its bodies and its file.
    bool into_open_model() const { return into_open_model_; }
    void choose_into_open_model(bool into) { into_open_model_ = into; }
    /// Why nothing can be imported as things stand, or "".
    std::string refusal() const;
    /// Imports the chosen line: table and untitled workspace (or the open one with these data), its data
    /// loaded, one step of the history. With all lines the folder gets tables and workspaces of all, and the
    /// chosen one is opened. True when a line is open; why not was told.
    bool import();
    /// The neighbour of the line that was imported last, `step` 1 or -1, keeping filters, regionals and so on
    /// and, where they are to be kept, the bodies. True when it is open; why not was told.
    bool import_neighbour(int step);
    /// The line that is open came from here.
    bool line_is_open() const;
    /// "Line 5700, 3 of 12"
    std::string place_words() const;
    const ImportedLine* imported() const { return imported_ ? &*imported_ : nullptr; }

  private:
    void recognise();
    void layout_is_new();
    void read_lines();
    void take(SurveyOutcome outcome);
    void choose_first_line();
    enum class Place { fresh, fresh_with_bodies, under_open_model };
    bool open_imported(ImportedLine imported, Place place);
    bool import_all();

    edit::Workbench& workbench_;
    ImportDeskObserver& observer_;
    std::string path_, folder_, trouble_;
    intake::ReadAs read_as_;
    std::optional<intake::SurveyLayout> layout_;
    intake::SurveyPreview preview_;
    std::vector<intake::RoleQuestion> questions_;
    std::vector<std::string> head_;
    double file_bytes_ = 0;
    SurveyReading reading_;
    std::shared_ptr<const intake::SurveyIndex> index_;
    std::optional<std::size_t> line_, piece_;
    std::string line_name_;  ///< chosen by a person; kept when the lines are read anew
    ImportChoices choices_;
    std::string system_text_;
    bool all_lines_ = false, keep_bodies_ = true, into_open_model_ = false;
    std::optional<ImportedLine> imported_;
};

}  // namespace anomalis::flow
