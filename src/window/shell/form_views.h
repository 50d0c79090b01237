#pragma once

#include <optional>

#include <QObject>

#include "chart/drawing_types.h"

class QAction;

namespace anomalis::window {

class Form_anomalis;

/// The part of the window that looks: which page is on show, the charts' own commands, highlighting, the
/// session's log, folder and defaults.
class FormViews : public QObject {
    Q_OBJECT

  public:
    explicit FormViews(Form_anomalis& form);

    /// The tab of the model was chosen. With a box that is wrong, the first tab comes back and the box gets
    /// the focus; without a line the page tells what to do.
    void enter_model_page();

  private:
    void add_file_entries();
    void add_bodies_entries();
    void add_chart_entries();
    void toggle_logging(bool on);
    void save_directory();
    void restore_directory();
    void save_defaults();
    void set_highlight(bool on);
    void section_menu_opens(float x, float y);
    void add_body_here();

    Form_anomalis& form_;
    QAction* logging_ = nullptr;
    QAction* add_here_ = nullptr;
    std::optional<chart::Point> menu_place_;  ///< of the pointer when the section's menu opened
};

}  // namespace anomalis::window
