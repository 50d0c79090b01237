#include "transform/qt/form_define_point_transform.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/settings.h"

namespace anomalis::transform {

namespace {

constexpr double twips_a_pixel = 15;
constexpr QSize designed_size{600, 490};

/// A row has an X box on the left and a Y box on the right, or one of the elevation.
struct BoxText {
    const char* name;
    const char* label;
    const char* unit;
    const char* tip;
    int row, column;
};

constexpr const char* shift_tip =
    "Value to add to data read from file (elevation, m; any number). It is added before the scale applies";
constexpr const char* scale_tip =
    "Multiplier applied to elevation value: Znew = (Zold+Zshift)*Zscale (any number but 0)";
constexpr const char* x_scale_tip =
    "How many new metres one original unit of X is; above 0, a transform with a negative scale does nothing";
constexpr const char* y_scale_tip =
    "How many new metres one original unit of Y is; above 0, a transform with a negative scale does nothing";

/// In the order of TransformBox.
constexpr std::array<BoxText, transform_box_count> box_texts{{
    {"Text_rotang", "Rotate clockwise by", "°", "Rotation about the origin, degrees clockwise; any number", 0,
     0},
    {"Text_xorigin", "Original X origin", "m", "East of the fixed point before the transform, m", 2, 0},
    {"Text_yorigin", "Original Y origin", "m", "North of the fixed point before the transform, m", 2, 1},
    {"Text_xoffset", "New X origin", "m", "East of the same point after the transform, m", 3, 0},
    {"Text_yoffset", "New Y origin", "m", "North of the same point after the transform, m", 3, 1},
    {"Text_xscale", "X scale factor", "", x_scale_tip, 1, 0},
    {"Text_yscale", "Y scale factor", "", y_scale_tip, 1, 1},
    {"Text_elevation_shift_0", "Elevation Shift", "m", shift_tip, 4, 0},
    {"Text_elevation_scale_0", "Elevation Scale", "", scale_tip, 4, 1},
    {"Text_original_x1", "Original X1", "m", "East of the first point before the transform, m", 0, 0},
    {"Text_original_y1", "Original Y1", "m", "North of the first point before the transform, m", 0, 1},
    {"Text_new_x1", "New X1", "m", "East of the first point after the transform, m", 1, 0},
    {"Text_new_y1", "New Y1", "m", "North of the first point after the transform, m", 1, 1},
    {"Text_original_x2", "Original X2", "m",
     "East of the second point before, m; 0.1 m or more from the first", 2, 0},
    {"Text_original_y2", "Original Y2", "m",
     "North of the second point before, m; 0.1 m or more from the first", 2, 1},
    {"Text_new_x2", "New X2", "m", "East of the second point after, m; 0.1 m or more from the first", 3, 0},
    {"Text_new_y2", "New Y2", "m", "North of the second point after, m; 0.1 m or more from the first", 3, 1},
    {"Text_elevation_shift_1", "Elevation Shift", "m", shift_tip, 4, 0},
    {"Text_elevation_scale_1", "Elevation Scale", "", scale_tip, 4, 1},
}};

constexpr int columns_a_box = 3;
constexpr int note_row = 5;
constexpr int unit_width = 30;  // pixels, with the gap to the next box

QString note_of(int tab) {
    return tab == 0 ? QObject::tr(
                          "A point is moved to the original origin, stretched, turned clockwise and "
                          "moved to the new origin.")
                    : QObject::tr(
                          "Two points that are known before and after fix the rotation, one scale for "
                          "both axes and the origin.");
}

}  // namespace

Form_define_point_transform::Form_define_point_transform(TransformDialog& dialog, Settings& settings,
                                                         QWidget* parent)
    : QDialog(parent), dialog_(dialog), settings_(settings), tabs_(new QTabWidget) {
    setObjectName("Form_define_point_transform");
    setWindowTitle(tr("Define Coordinate Transform"));
    tabs_->setObjectName("Tab_transform_type");
    tabs_->addTab(make_page(0), tr("Origin, scale and rotation"));
    tabs_->addTab(make_page(1), tr("Two points"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(tabs_, 1);
    column->addWidget(make_buttons());
    setMinimumSize(qRound(least_transform_form.width / twips_a_pixel),
                   qRound(least_transform_form.height / twips_a_pixel));
    resize(designed_size);
    if (const auto size = stored_transform_form_size(settings))
        resize(qRound(size->width / twips_a_pixel), qRound(size->height / twips_a_pixel));
    tabs_->setCurrentIndex(dialog_.tab());
    connect(tabs_, &QTabWidget::currentChanged, this, &Form_define_point_transform::tab_changed);
    fill();
}

QWidget* Form_define_point_transform::make_page(int tab) {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(10);
    for (const TransformBox box : TransformDialog::boxes_of(tab)) {
        const BoxText& text = box_texts.at(static_cast<std::size_t>(box));
        add_box(*grid, text.row, text.column, box);
    }
    for (const int box_column : {1, 1 + columns_a_box}) grid->setColumnStretch(box_column, 1);
    grid->setColumnMinimumWidth(columns_a_box - 1, unit_width);
    auto* note = new QLabel(note_of(tab));
    note->setWordWrap(true);
    grid->addWidget(note, note_row, 0, 1, 2 * columns_a_box);
    column->addLayout(grid);
    column->addStretch();
    // The keyboard goes along the rows, whatever order the boxes are checked in.
    QWidget* before = nullptr;
    for (int row = 0; row < note_row; ++row)
        for (int pair = 0; pair < 2; ++pair)
            if (auto* item = grid->itemAtPosition(row, pair * columns_a_box + 1)) {
                if (before) QWidget::setTabOrder(before, item->widget());
                before = item->widget();
            }
    return page;
}

void Form_define_point_transform::add_box(QGridLayout& grid, int row, int column, TransformBox box) {
    const auto index = static_cast<std::size_t>(box);
    const BoxText& text = box_texts.at(index);
    auto* edit = boxes_.at(index) = new QLineEdit;
    edit->setObjectName(text.name);
    edit->setAccessibleName(tr(text.label));
    edit->setToolTip(tr(text.tip));
    edit->setAlignment(Qt::AlignRight);
    auto* label = new QLabel(tr(text.label));
    label->setBuddy(edit);
    label->setToolTip(edit->toolTip());
    const int first = column * columns_a_box;
    grid.addWidget(label, row, first);
    grid.addWidget(edit, row, first + 1);
    grid.addWidget(new QLabel(QString::fromUtf8(text.unit)), row, first + 2);
    connect(edit, &QLineEdit::textEdited, this,
            [this, box](const QString& typed) { dialog_.edit(box, typed.toStdString()); });
}

void Form_define_point_transform::add_button(QGridLayout& grid, int row, int column, const char* name,
                                             const QString& text, const QString& tip,
                                             const std::function<void()>& action) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, action);
    grid.addWidget(button, row, column);
}

QWidget* Form_define_point_transform::make_buttons() {
    auto* buttons = new QWidget;
    auto* grid = new QGridLayout(buttons);
    grid->setContentsMargins(0, 0, 0, 0);
    const auto refilled = [this](auto action) {
        return [this, action] {
            action();
            fill();
        };
    };
    add_button(
        *grid, 0, 0, "Command_load_transform_file", tr("Load Transformation From File"),
        tr("Read a coordinate file (.crd): two points in both systems; the old definition stays when it "
           "cannot be read"),
        refilled([this] { dialog_.load_file(); }));
    add_button(*grid, 0, 1, "Command_save_transform_file", tr("Save Transformation To File"),
               tr("Write the definition to a coordinate file (.crd)"),
               refilled([this] { dialog_.save_file(); }));
    add_button(*grid, 1, 0, "Command_invert_transform", tr("Invert Transform"),
               tr("Make the transform that leads back from the new to the original coordinates"),
               refilled([this] { dialog_.invert(); }));
    add_button(*grid, 1, 1, "Command_reset", tr("Reset Transformation"),
               tr("Back to no change at all: rotation 0, scales 1, origins 0"),
               refilled([this] { dialog_.reset(); }));
    add_button(*grid, 2, 0, "Command_Done", tr("Done"),
               tr("Take the definition over; when it changed, the data must be loaded again"),
               [this] { take_over(); });
    add_button(*grid, 2, 1, "Command_cancel", tr("Cancel"), tr("Close and leave the transform as it was"),
               [this] { reject(); });
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    auto* chief = buttons->findChild<QPushButton*>("Command_Done");
    chief->setProperty("chief", true);
    chief->setDefault(true);
    return buttons;
}

void Form_define_point_transform::take_over() {
    if (dialog_.validate()) accept();
}

void Form_define_point_transform::tab_changed(int tab) {
    if (filling_) return;
    const bool changed = dialog_.choose_tab(tab);
    if (!changed) {
        const QSignalBlocker block(tabs_);
        tabs_->setCurrentIndex(dialog_.tab());
        return;  // the texts stay as typed
    }
    fill();
}

void Form_define_point_transform::fill() {
    filling_ = true;
    for (const TransformBox box : TransformDialog::boxes_of(dialog_.tab()))
        boxes_.at(static_cast<std::size_t>(box))->setText(QString::fromStdString(dialog_.text(box)));
    filling_ = false;
}

void Form_define_point_transform::done(int result) {
    store_transform_form_size({width() * twips_a_pixel, height() * twips_a_pixel}, settings_);
    if (result == Accepted) store_transform_folder(dialog_.folder(), settings_);
    QDialog::done(result);
}

}  // namespace anomalis::transform
