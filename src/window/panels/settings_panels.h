#pragma once

#include <array>
#include <map>

#include "edit/settings_boxes.h"
#include "edit/workbench.h"
#include "window/shell/model_news.h"
#include "window/widgets/entry_box.h"
#include "window/widgets/panel.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace anomalis::window {

/// A panel of boxes that are taken over on leaving.
class SettingsPanel : public Panel {
    Q_OBJECT

  public:
    SettingsPanel(const char* object_name, const QString& heading, edit::Workbench& workbench,
                  FormGuards& guards, ModelNews& news, int caption_width = wide_captions);

    /// Shows everything as the workspace holds it.
    virtual void fill();
    /// The box of a setting, null for one of another panel.
    CommitBox* box(edit::SettingsBox setting) const;

  signals:
    /// `instead` says what holds in place of the text.
    void text_refused(const QString& caption, const QString& text, const QString& instead);

  protected:
    CommitBox* make_box(edit::SettingsBox box, const ControlText& text);
    void add_box(int row, int pair, edit::SettingsBox box, const ControlText& text);
    edit::Workbench& workbench() { return workbench_; }
    FormGuards& guards() { return guards_; }
    const std::map<edit::SettingsBox, CommitBox*>& boxes() const { return boxes_; }
    /// A setting was stored.
    void tell() { news_.tell(News::settings); }

  private:
    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    std::map<edit::SettingsBox, CommitBox*> boxes_;
};

/// The ambient field.
class FieldPanel : public SettingsPanel {
    Q_OBJECT

  public:
    FieldPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);
    /// The three texts as their boxes show them: intensity, inclination, declination.
    std::array<std::string, 3> texts() const;
    void fill() override;
    /// Boxes that nobody is typing in, and what is said of the field beneath them.
    void show_source();

  signals:
    void place_and_date_wanted();

  private:
    std::array<CommitBox*, 3> field_boxes_{};
    QLabel* remark_;
};

/// Drawing: grids, the drawn length of endless bodies, label and aspect ratio.
class GraphOptionsPanel : public SettingsPanel {
    Q_OBJECT

  public:
    GraphOptionsPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);
    void fill() override;
    /// Before the model is drawn: a box whose text was refused takes its usual value, and it is told.
    void take_usual_values();

  private:
    QCheckBox* label_check_;
    QCheckBox* aspect_check_;
};

}  // namespace anomalis::window
