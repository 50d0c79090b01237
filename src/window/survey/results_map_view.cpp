#include "window/survey/results_map_view.h"

#include <cmath>
#include <utility>

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>

#include "chart/grapher_events.h"
#include "chart/qt/grapher_widget.h"
#include "survey/map/results_map_key.h"

namespace anomalis::window {

namespace {

constexpr int resize_pause = 40;                             // ms until a resize counts as ended
constexpr double still = 4 * chart::units_per_screen_pixel;  // a press that moves less is a click

}  // namespace

class ResultsMapView::Events : public chart::GrapherEvents {
  public:
    explicit Events(ResultsMapView& view) : view_(view) {}

    /// The second press of a double click on the chosen line is kept from the chart, which would show all.
    bool HoldPress(int button, int, float x, float y) override {
        held_ = button == 1 && clicked_.isValid() &&
                clicked_.elapsed() < QApplication::doubleClickInterval() && hit(x, y) &&
                hit(x, y)->line == view_.line_;
        return held_;
    }
    void HeldEnded(bool given_up) override {
        clicked_.invalidate();
        if (std::exchange(held_, false) && !given_up) emit view_.line_wanted();
    }
    void MouseDown(int button, int, float x, float y) override { press_ = {button, x, y}; }
    void MouseUp(int button, int, float x, float y) override {
        const bool click = button == 1 && press_.button == 1 && std::abs(x - press_.x) < still &&
                           std::abs(y - press_.y) < still;
        press_ = {};
        if (!click) return;
        const auto found = hit(x, y);
        if (!found) return;
        clicked_.start();
        view_.body_ = found->body;
        emit view_.line_chosen(found->line);
    }
    void ViewChanged() override { view_.results_map_->view_changed(); }
    void ZoomCleared() override { view_.results_map_->view_changed(); }
    void ChartReset() override { view_.results_map_->view_changed(); }

  private:
    struct Press {
        int button = 0;
        float x = 0, y = 0;
    };
    std::optional<survey::ResultsMap::Hit> hit(float x, float y) const {
        const double height = view_.map_->chart().Surface()->height();
        return view_.results_map_->hit({static_cast<double>(x), height - static_cast<double>(y)});
    }

    ResultsMapView& view_;
    Press press_;
    QElapsedTimer clicked_;
    bool held_ = false;
};

ResultsMapView::ResultsMapView(QWidget* parent)
    : QWidget(parent), map_(new chart::GrapherWidget), key_(new chart::GrapherWidget) {
    map_->setObjectName("vsgraph_results");
    map_->setToolTip(
        tr("A click chooses the nearest line, a double click opens it; the wheel zooms, a double click "
           "beside the lines shows all"));
    key_->setObjectName("vsgraph_results_key");
    key_->setFixedWidth(survey::results_key_width);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(map_, 1);
    row->addWidget(key_);
    survey::set_up_results_map(map_->chart(), key_->chart());
    results_map_ = std::make_unique<survey::ResultsMap>(map_->chart(), key_->chart());
    events_ = std::make_unique<Events>(*this);
    map_->set_host(events_.get());
    map_->installEventFilter(this);
    resized_.setSingleShot(true);
    resized_.setInterval(resize_pause);
    connect(&resized_, &QTimer::timeout, this, [this] { draw(true); });
}

ResultsMapView::~ResultsMapView() {
    map_->set_host(nullptr);
}

bool ResultsMapView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) resized_.start();
    return QWidget::eventFilter(watched, event);
}

void ResultsMapView::show_results(const survey::SurveyResults* results, survey::ResultsMapMarks marks,
                                  bool keep_view) {
    results_ = results;
    marks_ = std::move(marks);
    draw(keep_view);
}

void ResultsMapView::draw(bool keep_view) {
    resized_.stop();
    results_map_->show(results_, marks_, keep_view);
    results_map_->choose(line_, body_);
}

void ResultsMapView::choose(std::optional<std::size_t> line) {
    if (line_ != line) body_.reset();
    line_ = line;
    results_map_->choose(line_, body_);
}

}  // namespace anomalis::window
