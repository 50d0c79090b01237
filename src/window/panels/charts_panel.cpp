#include "window/panels/charts_panel.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "core/numbers.h"
#include "show/page_layout.h"
#include "window/widgets/panel.h"
#include "window/widgets/section_hint.h"

namespace anomalis::window {

namespace {

constexpr int resize_pause = 60;  // ms after the last resize event

QString zoom_text(double factor) {
    return QString::fromStdString(format_number(factor, "0.##")) + " x";
}

QSplitter* make_splitter(const char* name) {
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(name);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(5);
    return splitter;
}

}  // namespace

ChartsPanel::ChartsPanel(edit::Workbench& workbench, const FormGuards& guards, ModelNews& news,
                         QWidget* parent)
    : QWidget(parent), workbench_(workbench), guards_(guards), news_(news), resize_timer_(new QTimer(this)) {
    resize_timer_->setObjectName("Timer_resize");
    resize_timer_->setSingleShot(true);
    resize_timer_->setInterval(resize_pause);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 6, 8, 6);
    column->setSpacing(6);
    column->addWidget(make_charts(), 1);
    column->addWidget(make_bars());

    std::array<chart::AX_Grapher*, edit::model_chart_count> charts{};
    for (std::size_t i = 0; i < charts.size(); ++i) charts[i] = &panes_[i]->chart();
    flow::ModelViewHost& host = *this;
    view_ = std::make_unique<flow::ModelView>(workbench_, charts, plan_->chart(), host);
    view_->charts().set_up(true);
    wire_charts();
    connect(resize_timer_, &QTimer::timeout, this, [this] { view_->redraw(); });
}

ChartsPanel::~ChartsPanel() {
    for (ChartPane* pane : panes_) pane->widget().set_host(nullptr);
    plan_->set_host(nullptr);
}

QWidget* ChartsPanel::frame_of(const char* name, QWidget* inside) {
    auto* frame = new QWidget;
    frame->setObjectName(name);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(inside);
    return frame;
}

QWidget* ChartsPanel::make_charts() {
    for (int i = 0; i < edit::model_chart_count; ++i)
        panes_.at(static_cast<std::size_t>(i)) = new ChartPane(i);
    mag_splitter_ = make_splitter("Image_splitter_mag");
    mag_splitter_->addWidget(panes_[edit::chart_mag]);
    mag_splitter_->addWidget(panes_[edit::chart_mag_gradient]);
    grav_splitter_ = make_splitter("Image_splitter_grav");
    grav_splitter_->addWidget(panes_[edit::chart_grav]);
    grav_splitter_->addWidget(panes_[edit::chart_grav_gradient]);
    plan_ = new chart::GrapherWidget;
    plan_->setObjectName("vsgraph_plan");
    section_or_plan_ = new QStackedWidget;
    section_or_plan_->addWidget(frame_of("Frame_section", panes_[edit::chart_section]));
    QWidget* plan_frame = frame_of("Frame_plan", plan_);
    // As wide as the charts above it, which have bars beside them.
    plan_frame->layout()->setContentsMargins(0, 0, panes_[edit::chart_section]->room_beside(), 0);
    section_or_plan_->addWidget(plan_frame);

    splitter_ = make_splitter("Image_splitter");
    splitter_->addWidget(frame_of("Frame_mag_profiles", mag_splitter_));
    splitter_->addWidget(frame_of("Frame_grav_profiles", grav_splitter_));
    splitter_->addWidget(section_or_plan_);
    for (QSplitter* splitter : {splitter_, mag_splitter_, grav_splitter_})
        connect(splitter, &QSplitter::splitterMoved, this, &ChartsPanel::splitter_moved);
    return splitter_;
}

QWidget* ChartsPanel::make_bars() {
    auto* bars = new QWidget;
    bars->setObjectName("Frame_buttons");
    auto* row = new QHBoxLayout(bars);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    zoom_list_ = new QComboBox;
    name_control(*zoom_list_, "Combo_zoom", tr("Zoom"),
                 tr("How many times the line is stretched along the distance"));
    for (const float factor : zoom_factors) zoom_list_->addItem(zoom_text(factor));
    pan_bar_ = new PanBar;
    name_control(
        *pan_bar_, "HScroll_pan", tr("Pan"),
        tr("Which part of the line is shown while it is zoomed. Arrow keys move it, with Shift finely"));
    pan_bar_->setEnabled(false);
    plan_button_ =
        make_button({"Command_show_plan", "Show Plan", "", "Show the plan in place of the section"});
    auto* reset = make_button({"Command_reset_graph_scale", "Reset scale", "",
                               "Show the whole line, every chart scaled to its data"});
    row->addWidget(make_caption(tr("Zoom"), zoom_list_));
    row->addWidget(zoom_list_);
    row->addWidget(pan_bar_, 1);
    row->addWidget(plan_button_);
    row->addWidget(reset);
    buttons_ = row;
    connect(zoom_list_, &QComboBox::activated, this, [this](int index) {
        // The factor found by hand, behind the list, is what the charts show already.
        if (index < static_cast<int>(std::size(zoom_factors))) view_->choose_zoom_factor(index);
    });
    connect(pan_bar_, &QScrollBar::valueChanged, this, [this](int pan) { view_->pan_to(pan); });
    connect(plan_button_, &QPushButton::clicked, this, [this] {
        if (guards_.pass()) show_plan(!workbench_.view.show_plan);
    });
    connect(reset, &QPushButton::clicked, this, [this] {
        if (guards_.pass()) view_->reset_graph_scale();
    });
    return bars;
}

QPushButton* ChartsPanel::add_button(const ControlText& text) {
    QPushButton* button = make_button(text);
    buttons_->addWidget(button);
    return button;
}

void ChartsPanel::wire_charts() {
    for (int i = 0; i < edit::model_chart_count; ++i) {
        ChartPane* pane = panes_.at(static_cast<std::size_t>(i));
        pane->widget().set_host(&view_->events(i));
        connect(pane, &ChartPane::zoom_stepped, this,
                [this, i](int direction) { view_->step_zoom(i, direction); });
        connect(pane, &ChartPane::pan_stepped, this,
                [this, i](int direction) { view_->step_pan(i, direction); });
    }
    plan_->set_host(&view_->events(edit::model_chart_count));
    hint_ = new SectionHint(&panes_[edit::chart_section]->widget());
    connect(hint_, &SectionHint::find_wanted, this, &ChartsPanel::find_wanted);
    connect(hint_, &SectionHint::add_wanted, this, &ChartsPanel::add_wanted);
    for (chart::GrapherWidget* widget : {&panes_[edit::chart_section]->widget(), plan_})
        widget->set_picture_taking([this](bool begins) { view_->set_plain(begins); });
}

void ChartsPanel::set_plain(bool plain) {
    for (ChartPane* pane : panes_) pane->set_plain(plain);
    plan_->show_top_layer(!plain);
    view_->set_plain(plain);
    plain_ = plain;
    show_hint();
}

void ChartsPanel::show_plan(bool plan) {
    workbench_.view.show_plan = plan;
    show_choices();  // the chart has its size before it is drawn
    view_->update_section_or_plan_view(plan);
    news_.tell(News::view);
}

void ChartsPanel::show_choices() {
    view_->show_axes();
    const bool plan = workbench_.view.show_plan;
    section_or_plan_->setCurrentIndex(plan ? 1 : 0);
    plan_button_->setText(plan ? tr("Show Section") : tr("Show Plan"));
    plan_button_->setToolTip(plan ? tr("Show the section in place of the plan")
                                  : tr("Show the plan in place of the section"));
}

void ChartsPanel::follow(WhatChanged what) {
    if (what & (News::view | News::form_reset)) show_choices();
    if (what & News::line) {
        view_->clear_charts();
        line_changed();
    }
    if (what & (News::parameters | News::bodies | News::settings | News::line | News::form_reset))
        view_->display_model();
    else if (what & News::preferences)
        view_->redraw();
    if (what & (News::bodies | News::line | News::form_reset | News::boxes)) show_hint();
}

void ChartsPanel::show_hint() {
    const Workspace& workspace = workbench_.session.workspace;
    hint_->setVisible(hint_allowed_ && !plain_ && edit::line_loaded(workspace) && workspace.body_count == 0);
}

void ChartsPanel::allow_hint(bool allowed) {
    hint_allowed_ = allowed;
    show_hint();
}

void ChartsPanel::arrange_charts(const std::array<bool, edit::model_chart_count>& shown) {
    if (shown == arranged_) return;
    arranged_ = shown;
    for (std::size_t i = 0; i < panes_.size(); ++i)
        if (i != edit::chart_section) panes_[i]->setVisible(shown[i]);
    mag_splitter_->parentWidget()->setVisible(shown[edit::chart_mag]);
    grav_splitter_->parentWidget()->setVisible(shown[edit::chart_grav]);
    share_height_anew();
}

void ChartsPanel::line_changed() {
    arranged_ = {};
    show_window(view_->shown_window());
}

void ChartsPanel::share_height_anew() {
    edit::ViewState& view = workbench_.view;
    const show::ChartHeights heights =
        show::share_height(splitter_->height(), arranged_, view.pane_fractions);
    view.pane_places = show::splitter_places(heights, view.pane_places);
    mag_splitter_->setSizes({heights[edit::chart_mag], heights[edit::chart_mag_gradient]});
    grav_splitter_->setSizes({heights[edit::chart_grav], heights[edit::chart_grav_gradient]});
    splitter_->setSizes({heights[edit::chart_mag] + heights[edit::chart_mag_gradient],
                         heights[edit::chart_grav] + heights[edit::chart_grav_gradient],
                         heights[edit::chart_section]});
}

void ChartsPanel::show_pointer(const show::PointerPanels& panels) {
    emit pointer_moved(panels);
}

void ChartsPanel::show_misfit(const MisfitPair& misfit) {
    misfit_ = misfit;
    news_.tell(News::calculated);
}

void ChartsPanel::show_base_level(int channel, const std::string& text) {
    emit base_level_found(channel, QString::fromStdString(text));
}

/// A factor that was found by hand has an entry of its own at the end of the list.
void ChartsPanel::show_window(const edit::ShownWindow& window) {
    const QSignalBlocker zoom_block(zoom_list_), pan_block(pan_bar_);
    constexpr int listed = static_cast<int>(std::size(zoom_factors));
    int index = -1;
    for (int i = 0; !window.by_hand && i < listed; ++i)
        if (zoom_factors[static_cast<std::size_t>(i)] == static_cast<float>(window.factor)) index = i;
    while (zoom_list_->count() > listed) zoom_list_->removeItem(listed);
    if (index < 0) {
        zoom_list_->addItem(zoom_text(window.factor));
        index = listed;
    }
    zoom_list_->setCurrentIndex(index);
    pan_bar_->setRange(-window.pan_limit, window.pan_limit);
    pan_bar_->setPageStep(window.pan_limit > 0 ? std::max(1, window.pan_limit / 5) : 1);
    pan_bar_->setValue(window.pan);
    pan_bar_->setEnabled(window.pan_limit > 0);
}

void ChartsPanel::splitter_moved() {
    edit::ViewState& view = workbench_.view;
    show::ChartHeights heights{};
    for (std::size_t i = 0; i < panes_.size(); ++i) heights[i] = arranged_[i] ? panes_[i]->height() : 0;
    if (view.show_plan) heights[edit::chart_section] = plan_->height();
    view.pane_places = view.pane_fractions = show::splitter_places(heights, view.pane_fractions);
    restart_resize();
}

void ChartsPanel::restart_resize() {
    resize_timer_->start();
}

void ChartsPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    restart_resize();
}

void ChartsPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    share_height_anew();
}

}  // namespace anomalis::window
