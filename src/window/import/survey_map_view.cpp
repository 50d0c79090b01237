#include "window/import/survey_map_view.h"

#include <cmath>

#include <QEvent>
#include <QHBoxLayout>

#include "chart/grapher_events.h"
#include "chart/qt/grapher_widget.h"

namespace anomalis::window {

namespace {

constexpr int bar_width = 88;                                // pixels
constexpr int resize_pause = 40;                             // ms until a resize counts as ended
constexpr double still = 4 * chart::units_per_screen_pixel;  // a press that moves less is a click

}  // namespace

class SurveyMapView::Events : public chart::GrapherEvents {
  public:
    explicit Events(SurveyMapView& view) : view_(view) {}

    void MouseDown(int button, int, float x, float y) override { press_ = {button, x, y}; }
    void MouseUp(int button, int, float x, float y) override {
        const bool click = button == 1 && press_.button == 1 && std::abs(x - press_.x) < still &&
                           std::abs(y - press_.y) < still;
        press_ = {};
        if (!click) return;
        const double height = view_.map_->chart().Surface()->height();
        const auto line = view_.survey_->line_at({static_cast<double>(x), height - static_cast<double>(y)});
        if (line) emit view_.line_chosen(*line);
    }
    void ViewChanged() override { view_.survey_->view_changed(); }
    void ZoomCleared() override { view_.survey_->view_changed(); }
    void ChartReset() override { view_.survey_->view_changed(); }

  private:
    struct Press {
        int button = 0;
        float x = 0, y = 0;
    };
    SurveyMapView& view_;
    Press press_;
};

SurveyMapView::SurveyMapView(QWidget* parent)
    : QWidget(parent), map_(new chart::GrapherWidget), bar_(new chart::GrapherWidget) {
    map_->setObjectName("vsgraph_survey");
    map_->setToolTip(tr("A click chooses the nearest line; the wheel zooms, a double click shows all"));
    bar_->setObjectName("vsgraph_survey_bar");
    bar_->setFixedWidth(bar_width);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(map_, 1);
    row->addWidget(bar_);
    show::set_up_survey_map(map_->chart(), bar_->chart());
    survey_ = std::make_unique<show::SurveyMap>(map_->chart(), bar_->chart());
    events_ = std::make_unique<Events>(*this);
    map_->set_host(events_.get());
    map_->installEventFilter(this);
    resized_.setSingleShot(true);
    resized_.setInterval(resize_pause);
    connect(&resized_, &QTimer::timeout, this, &SurveyMapView::draw);
}

SurveyMapView::~SurveyMapView() {
    map_->set_host(nullptr);
}

bool SurveyMapView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) resized_.start();
    return QWidget::eventFilter(watched, event);
}

void SurveyMapView::show_survey(const intake::SurveyIndex* index) {
    index_ = index;
    line_.reset();
    piece_.reset();
    draw();
}

void SurveyMapView::draw() {
    resized_.stop();
    survey_->show(index_, line_);
    if (piece_) survey_->choose(line_, piece_);
}

void SurveyMapView::choose(std::optional<std::size_t> line, std::optional<std::size_t> piece) {
    line_ = line;
    piece_ = piece;
    survey_->choose(line, piece);
}

}  // namespace anomalis::window
