#pragma once

#include <array>
#include <memory>

#include <QWidget>

#include "edit/workbench.h"
#include "flow/model_view.h"
#include "window/panels/chart_pane.h"
#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QComboBox;
class QHBoxLayout;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QTimer;

namespace anomalis::window {

struct ControlText;
class SectionHint;

/// The left side of the model page: the linked charts with splitters between them, zoom list, pan bar and
/// view buttons below.
class ChartsPanel : public QWidget, private flow::ModelViewHost {
    Q_OBJECT

  public:
    ChartsPanel(edit::Workbench& workbench, const FormGuards& guards, ModelNews& news,
                QWidget* parent = nullptr);
    ~ChartsPanel() override;

    flow::ModelView& view() { return *view_; }
    /// Section or plan, by button or menu.
    void show_plan(bool plan);
    void follow(WhatChanged what);
    /// For a picture of the window: no bars, handles, crosshair and highlights while it is true.
    void set_plain(bool plain);
    /// The words over a section without bodies are in the way of pictures and of models that are looked at.
    void allow_hint(bool allowed);
    /// A button behind those under the charts.
    QPushButton* add_button(const ControlText& text);
    /// Of the model as it was last calculated.
    const MisfitPair& misfit() const { return misfit_; }
    chart::GrapherWidget& chart_widget(int index) {
        return panes_.at(static_cast<std::size_t>(index))->widget();
    }
    chart::GrapherWidget& plan_widget() { return *plan_; }

  signals:
    void pointer_moved(const anomalis::show::PointerPanels& panels);
    /// The current body is to be taken away, by a key on section or plan.
    void delete_wanted();
    /// What a section without bodies offers.
    void find_wanted();
    void add_wanted();
    /// A calculation was left: the charts show the curves of before.
    void calculation_left();
    void base_level_found(int channel, const QString& text);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void arrange_charts(const std::array<bool, edit::model_chart_count>& shown) override;
    void show_pointer(const show::PointerPanels& panels) override;
    void show_misfit(const MisfitPair& misfit) override;
    void show_base_level(int channel, const std::string& text) override;
    void show_window(const edit::ShownWindow& window) override;
    bool may_leave_body() override { return guards_.pass(); }
    bool may_change_body() override { return guards_.pass(); }
    void body_changed() override { news_.tell(News::parameters); }
    void delete_body_wanted() override { emit delete_wanted(); }
    void show_current_body() override { news_.tell(News::current_body); }
    void calculation_stopped() override { emit calculation_left(); }

    /// Zoom list and pan bar follow another line, every chart gets its share of the height.
    void line_changed();
    /// How to begin, as long as there is nothing but the line.
    void show_hint();
    /// Axes, section or plan as the view has them.
    void show_choices();
    QWidget* make_charts();
    QWidget* make_bars();
    QWidget* frame_of(const char* name, QWidget* inside);
    void wire_charts();
    void share_height_anew();
    void splitter_moved();
    void restart_resize();

    edit::Workbench& workbench_;
    const FormGuards& guards_;
    ModelNews& news_;
    std::array<ChartPane*, edit::model_chart_count> panes_{};
    chart::GrapherWidget* plan_ = nullptr;
    QSplitter* splitter_ = nullptr;
    QSplitter* mag_splitter_ = nullptr;
    QSplitter* grav_splitter_ = nullptr;
    QStackedWidget* section_or_plan_ = nullptr;
    SectionHint* hint_ = nullptr;
    bool hint_allowed_ = true;
    bool plain_ = false;  ///< a picture is taken
    QComboBox* zoom_list_ = nullptr;
    PanBar* pan_bar_ = nullptr;
    QHBoxLayout* buttons_ = nullptr;
    QPushButton* plan_button_ = nullptr;
    QTimer* resize_timer_ = nullptr;
    std::array<bool, edit::model_chart_count> arranged_{};
    MisfitPair misfit_{};
    std::unique_ptr<flow::ModelView> view_;
};

}  // namespace anomalis::window
