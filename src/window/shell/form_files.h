#pragma once

#include <array>

#include <QObject>

#include "flow/export_flow.h"
#include "flow/recent_files.h"
#include "flow/save_flow.h"

class QAction;
class QPushButton;

namespace anomalis::window {

class Form_anomalis;

/// The part of the window that brings files in and out: save, recent files, exports, pictures, the coordinate
/// transform and the file environment report. Opening itself is the window's.
class FormFiles : public QObject {
    Q_OBJECT

  public:
    explicit FormFiles(Form_anomalis& form);

    /// Fills the recent files from the settings, once these are read.
    void read_recent_files();
    /// The recent files and the Save button follow.
    void update();

  private:
    void add_save_entries();
    void add_export_entries();
    void add_recent_entries();
    void add_buttons();
    void add_transform_button();
    QAction* add_entry(QAction* before, const char* name, const QString& text, const QString& tip);
    QPushButton* add_button(const char* name, const QString& text, const QString& tip);

    /// False while a run or a filling keeps the controls closed; otherwise what is typed is taken over.
    bool may_act();
    flow::WindowLayout layout() const;
    void save_as();
    void save_by_button();
    void save_by_key();
    void show_saved(flow::SaveOutcome outcome);
    void open_recent(int index);
    void export_table(flow::ExportOutcome (*export_flow)(edit::Workbench&));
    void export_drawing(bool plan);
    void screenshot(flow::ScreenshotKind kind);
    void define_transform();
    void find_file();

    Form_anomalis& form_;
    int transform_tab_ = 0;  ///< survives between openings of its form
    QPushButton* save_button_ = nullptr;
    QAction* recent_separator_ = nullptr;
    std::array<QAction*, flow::most_recent_files> recent_{};
};

}  // namespace anomalis::window
