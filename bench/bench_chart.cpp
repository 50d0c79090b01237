// What a redraw of the charts costs against drawing the same points with nothing around them.

#include <benchmark/benchmark.h>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include "allocations.h"
#include "chart/ax_grapher.h"
#include "chart/qt/screen_device.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int panes = 5;
constexpr int page_width = 1600;
constexpr int page_height = 1000;

/// A survey-like curve: anomalies and noise.
std::vector<double> curve(int points, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> noise(-10, 10);
    std::vector<double> values;
    for (int i = 0; i < points; ++i) {
        const double x = 7400.0 * i / (points - 1);
        values.push_back(600 * std::exp(-std::pow((x - 3700) / 400, 2)) + 90 * std::sin(x / 700) +
                         noise(random));
    }
    return values;
}

std::vector<double> distances(int points) {
    std::vector<double> values;
    for (int i = 0; i < points; ++i) values.push_back(7400.0 * i / (points - 1));
    return values;
}

class Pane {
  public:
    Pane(int width, int height, int points, int bodies = 0) : x_(distances(points)), y_(curve(points, 1)) {
        surface_.resize(QSize(width, height), 1.0);
        chart_.SetSurface(&surface_);
        chart::Font font;
        font.bold = false;
        chart_.FONT(font);
        chart_.BackColor(chart::white);
        chart_.DisplayAxes(true);
        chart_.DisplayBorder(true);
        chart_.ChartType(1);
        chart_.Title("Residual Magnetic Field");
        chart_.XAxisLabellingPosition(0);
        chart_.YAxisLabellingPosition(0);
        chart_.XAxisMin(0);
        chart_.XAxisMax(7400);
        chart_.YAxisMin(-200);
        chart_.YAxisMax(700);
        chart_.XTickInterval(1000);
        chart_.YTickInterval(100);
        const std::vector<chart::ChartRow> rows{{chart::x_row, x_}, {chart::chart_type_series, y_}};
        chart_.RegisterData(rows);
        const double xs[] = {1000, 1400, 1500, 1100, 1000};
        const double ys[] = {100, 100, -150, -150, 100};
        for (int i = 0; i < bodies; ++i) chart_.DrawPolygon(5, xs, ys, chart::black, 0xB4761F, 1);
        chart_.DisplayChart();
    }
    chart::AX_Grapher& chart() { return chart_; }
    /// A redraw for which nothing of the last picture can be kept: the title is another one.
    void redraw_all() {
        chart_.Title(++turn_ % 2 == 0 ? "Residual Magnetic Field" : "Residual Magnetic Fields");
        chart_.RefreshGraph(0);
    }
    /// The same points as the chart's, in pixels.
    QPolygonF pixels() {
        QPolygonF points;
        for (std::size_t i = 0; i < x_.size(); ++i) {
            const chart::Point at = chart_.UserToSurface({x_[i], y_[i]});
            points.append({at.x / chart::units_per_screen_pixel,
                           (surface_.height() - at.y) / chart::units_per_screen_pixel});
        }
        return points;
    }

  private:
    std::vector<double> x_, y_;
    int turn_ = 0;
    chart::ScreenDevice surface_;
    chart::AX_Grapher chart_;
};

void five_linked_charts(benchmark::State& state) {
    std::vector<std::unique_ptr<Pane>> charts;
    // The last chart stands for the section with its bodies.
    for (int i = 1; i <= panes; ++i)
        charts.push_back(std::make_unique<Pane>(page_width, page_height / panes, 8193, i == panes ? 50 : 0));
    std::vector<QPolygonF> lines;
    for (auto& pane : charts) lines.push_back(pane->pixels());
    QImage bare(page_width, page_height / panes, QImage::Format_ARGB32_Premultiplied);

    BestTime full, overlay, polylines;
    for (auto _ : state) {
        const double seconds = full.take([&] {
            for (auto& pane : charts) pane->redraw_all();
        });
        overlay.take([&] {
            for (auto& pane : charts) pane->chart().RefreshGraph(1);
        });
        polylines.take([&] {
            for (const QPolygonF& line : lines) {
                bare.fill(Qt::white);
                QPainter painter(&bare);
                painter.setRenderHint(QPainter::Antialiasing);
                painter.drawPolyline(line);
            }
        });
        state.SetIterationTime(seconds);
    }
    state.counters["full_ms"] = full.seconds() * 1e3;
    state.counters["full_to_bare_polyline"] = full.seconds() / polylines.seconds();
    state.counters["overlay_to_full"] = overlay.seconds() / full.seconds();
}
BENCHMARK(five_linked_charts)->Iterations(40)->UseManualTime()->Unit(benchmark::kMillisecond);

void a_million_points(benchmark::State& state) {
    Pane small(page_width, page_height, 10000), large(page_width, page_height, 1000000);
    BestTime few, many;
    for (auto _ : state) {
        const double seconds = many.take([&] { large.redraw_all(); });
        few.take([&] { small.redraw_all(); });
        state.SetIterationTime(seconds);
    }
    state.counters["ratio_to_10000"] = many.seconds() / few.seconds();
    state.counters["few_ms"] = few.seconds() * 1e3;
}
BENCHMARK(a_million_points)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The most that any of a hundred steps of the wheel, or moves of a pan, allocates.
long most_allocations(int points, const std::function<void(chart::AX_Grapher&, int)>& step) {
    Pane pane(page_width, page_height / panes, points);
    for (int i = 0; i < 10; ++i) pane.chart().HandleWheel(0, 120, 12000, 1500);
    for (int i = 0; i < 4; ++i) step(pane.chart(), i);
    long most = 0;
    for (int i = 0; i < 100; ++i) {
        const long before = allocation_count();
        step(pane.chart(), i);
        most = std::max(most, allocation_count() - before);
    }
    return most;
}

void a_gesture(benchmark::State& state) {
    const auto zoom = [](chart::AX_Grapher& chart, int i) {
        chart.HandleWheel(0, i % 2 == 0 ? 120 : -120, 12000, 1500);
    };
    const auto pan = [](chart::AX_Grapher& chart, int i) { chart.PanBy(i % 2 == 0 ? 300 : -300, 0); };
    Pane pane(page_width, page_height / panes, 8193);
    int turn = 0;
    for (auto _ : state) zoom(pane.chart(), turn++);
    for (const int points : {1000, 10000, 1000000}) {
        const std::string count = std::to_string(points);
        state.counters["zoom_allocations_" + count] = static_cast<double>(most_allocations(points, zoom));
        state.counters["pan_allocations_" + count] = static_cast<double>(most_allocations(points, pan));
    }
}
BENCHMARK(a_gesture)->Iterations(200)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
