#pragma once

#include <array>
#include <functional>

#include <QDialog>

#include "transform/transform_dialog.h"

class QGridLayout;
class QLineEdit;
class QTabWidget;

namespace anomalis::transform {

/// The modal form over a TransformDialog, which outlives it. Accepted when the definition is to be taken
/// over.
class Form_define_point_transform : public QDialog {
    Q_OBJECT

  public:
    /// Size and folder are kept in `settings`: the size on every way out, the folder after "Done".
    Form_define_point_transform(TransformDialog& dialog, Settings& settings, QWidget* parent = nullptr);

    void done(int result) override;

  private:
    QWidget* make_page(int tab);
    void add_box(QGridLayout& grid, int row, int column, TransformBox box);
    QWidget* make_buttons();
    void add_button(QGridLayout& grid, int row, int column, const char* name, const QString& text,
                    const QString& tip, const std::function<void()>& action);
    void take_over();
    void tab_changed(int tab);
    /// Shows the texts of the present tab.
    void fill();

    TransformDialog& dialog_;
    Settings& settings_;
    bool filling_ = false;
    QTabWidget* tabs_;
    std::array<QLineEdit*, transform_box_count> boxes_{};
};

}  // namespace anomalis::transform
