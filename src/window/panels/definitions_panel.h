#pragma once

#include <array>

#include "edit/definition_boxes.h"
#include "edit/workbench.h"
#include "window/shell/model_news.h"
#include "window/widgets/entry_box.h"
#include "window/widgets/panel.h"

namespace anomalis::flow {
struct LoadResult;
}  // namespace anomalis::flow

namespace anomalis::window {

/// Which file holds the observed data and how to read it, the command that loads it, and what came of it.
class DefinitionsPanel : public Panel {
    Q_OBJECT

  public:
    DefinitionsPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news,
                     QWidget* parent = nullptr);

    /// Shows the definition as the workspace holds it. The final line's box keeps its text unless it is asked
    /// for, at the start and after an undo.
    void fill(bool with_final_line = false);
    void show_file_name();
    void show_result(const flow::LoadResult& result);
    void blank_results();
    void mark_extent(bool present);

    /// What a line without a model calls for next.
    void offer_find(bool offer);

  signals:
    void find_wanted();
    void data_file_wanted();
    void load_wanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void add_file_row();
    void add_box(int row, int pair, edit::DefinitionBox box, const ControlText& text);
    void add_results();
    bool take(edit::DefinitionBox box, const std::string& text);

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    QLineEdit* file_box_ = nullptr;
    QPushButton* load_button_ = nullptr;
    QPushButton* find_button_ = nullptr;
    std::array<KeystrokeBox*, edit::all_definition_boxes.size()> boxes_{};
    QLineEdit* number_box_ = nullptr;
    QLineEdit* length_box_ = nullptr;
    QLineEdit* spacing_box_ = nullptr;
};

}  // namespace anomalis::window
