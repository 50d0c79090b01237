#include "window/panels/pipe_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "edit/workbench.h"
#include "window/shell/look.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

namespace {

constexpr int columns_a_pair = 2;
constexpr int box_width = 46;  // pixels

}  // namespace

PipePanel::PipePanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : workbench_(workbench), guards_(guards), news_(news) {
    setObjectName("Frame_cylinder");
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(3);
    add_box(*grid, 0, 0, edit::PipeBox::shell_thickness,
            {"Text_Shell_Thickness", "Wall (m)", "m",
             "Thickness of the wall of a hollow pipe, m (0 or more; 0 is solid). It must stay below half the "
             "diameter, or the pipe has no solid and no response"});
    add_box(*grid, 0, 1, edit::PipeBox::sectors,
            {"Text_num_sectors", "Sectors", "",
             "Flat faces round the axis (0 or more; odd numbers take one more, below 4 takes 12)"});
    add_box(*grid, 0, 2, edit::PipeBox::segments,
            {"Text_num_segments", "Segments", "", "Rings along the axis (0 or more; 0 and 1 are one ring)"});
    add_box(*grid, 1, 0, edit::PipeBox::end_thickness,
            {"Text_End_Thickness", "Ends (m)", "m",
             "Thickness of the closed ends of a hollow pipe, m (0 or more; 0 leaves them open). It must stay "
             "below half the length"});
    add_box(*grid, 1, 1, edit::PipeBox::max_triangle_size,
            {"Text_max_triangle_size", "Size (m)", "m",
             "Longest side of a face, m (0 or more; 0 sets none). Below the length it raises the two counts "
             "where they are too small"});
    for (int pair = 0; pair < 3; ++pair) grid->setColumnStretch(pair * columns_a_pair + 1, 1);
}

void PipePanel::add_box(QGridLayout& grid, int row, int pair, edit::PipeBox box, const ControlText& text) {
    const QString caption = tr(text.caption);
    const auto accept = [this, box](const std::string& typed) {
        const edit::BoxChange change = edit::change_pipe_box(workbench_, box, typed);
        if (change == edit::BoxChange::stored) news_.tell(News::parameters);
        return change != edit::BoxChange::refused;
    };
    const auto stored = [this, box] { return edit::pipe_box_text(workbench_, box); };
    auto* entry = new CommitBox(text, guards_, {accept, stored});
    entry->setMinimumWidth(box_width);
    connect(entry, &CommitBox::text_refused, this,
            [this, caption](const QString& typed) { emit text_refused(caption, typed); });
    grid.addWidget(make_caption(caption, entry), row, pair * columns_a_pair);
    grid.addWidget(entry, row, pair * columns_a_pair + 1);
    boxes_.push_back(entry);
}

void PipePanel::fill() {
    for (CommitBox* box : boxes_) box->refill();
}

QWidget* make_wire_frame() {
    auto* frame = new QWidget;
    frame->setObjectName("Frame_wire");
    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(0, 0, 0, 0);
    auto* text = new QLabel(QObject::tr(
        "Current in mA along the strike. With a separation the body is a pair of wires whose currents run "
        "against each other; without one it is a single wire."));
    text->setWordWrap(true);
    make_quiet(*text);
    column->addWidget(text);
    return frame;
}

}  // namespace anomalis::window
