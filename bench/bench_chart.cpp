// What a redraw of the charts costs against drawing the same points with nothing around them.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
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

/// A survey-like curve: anomalies and noise of so many nT to either side.
std::vector<double> curve(int points, double most_noise = 10) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(-1, 1);
    std::vector<double> values;
    for (int i = 0; i < points; ++i) {
        const double x = 7400.0 * i / (points - 1);
        values.push_back(600 * std::exp(-std::pow((x - 3700) / 400, 2)) + 90 * std::sin(x / 700) +
                         most_noise * noise(random));
    }
    return values;
}

std::vector<double> distances(int points) {
    std::vector<double> values;
    for (int i = 0; i < points; ++i) values.push_back(7400.0 * i / (points - 1));
    return values;
}

/// What a pane shows besides its one curve of `points` stations.
struct Contents {
    int points = 8193;
    int bodies = 0;
    double ratio = 1.0;       ///< device pixels a pixel
    int pen = 1;              ///< pixels
    double most_noise = 10;   ///< nT
    bool calculated = false;  ///< a second curve, smooth
    bool shuffled = false;    ///< stations in random order
};

class Pane {
  public:
    Pane(int width, int height, const Contents& contents)
        : x_(distances(contents.points)), y_(curve(contents.points, contents.most_noise)) {
        if (contents.shuffled) shuffle();
        surface_.resize(QSize(width, height), contents.ratio);
        chart_.SetSurface(&surface_);
        set_up();
        std::vector<chart::ChartRow> rows{{chart::x_row, x_}, {chart::chart_type_series, y_}};
        const std::vector<double> calculated = curve(contents.points, 0);
        if (contents.calculated) rows.push_back({chart::chart_type_series, calculated});
        chart_.RegisterData(rows);
        chart_.SetSeriesOptions(1, 1, chart::black, "Observed", 0, -1, contents.pen);
        if (contents.calculated) chart_.SetSeriesOptions(1, 2, 0x00FF00, "Calculated", 0, -1, contents.pen);
        const double xs[] = {1000, 1400, 1500, 1100, 1000};
        const double ys[] = {100, 100, -150, -150, 100};
        for (int i = 0; i < contents.bodies; ++i) chart_.DrawPolygon(5, xs, ys, chart::black, 0xB4761F, 1);
        chart_.DisplayChart();
    }
    chart::AX_Grapher& chart() { return chart_; }
    QSize pixels() const { return surface_.picture().size(); }
    /// A redraw for which nothing of the last picture can be kept: the title is another one.
    void redraw_all() {
        chart_.Title(++turn_ % 2 == 0 ? "Residual Magnetic Field" : "Residual Magnetic Fields");
        chart_.RefreshGraph(0);
    }
    /// The same points as the chart's, in pixels of the device.
    QPolygonF line() {
        QPolygonF points;
        const double scale = surface_.device_pixel_ratio() / chart::units_per_screen_pixel;
        for (std::size_t i = 0; i < x_.size(); ++i) {
            const chart::Point at = chart_.UserToSurface({x_[i], y_[i]});
            points.append({at.x * scale, (surface_.height() - at.y) * scale});
        }
        return points;
    }

  private:
    void set_up() {
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
    }
    void shuffle() {
        std::mt19937 random(2);
        for (std::size_t i = x_.size(); i > 1; --i) {
            const std::size_t other = random() % i;
            std::swap(x_[i - 1], x_[other]);
            std::swap(y_[i - 1], y_[other]);
        }
    }

    std::vector<double> x_, y_;
    int turn_ = 0;
    chart::ScreenDevice surface_;
    chart::AX_Grapher chart_;
};

/// Seconds that the points of a pane take as a line of one device pixel with nothing around it.
double draw_bare(QImage& picture, const QPolygonF& line) {
    const double begin = cpu_seconds();
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPolyline(line);
    painter.end();
    return cpu_seconds() - begin;
}

/// Scale of the display in percent, width of the curves in pixels.
void five_linked_charts(benchmark::State& state) {
    Contents contents;
    contents.ratio = static_cast<double>(state.range(0)) / 100.0;
    contents.pen = static_cast<int>(state.range(1));
    std::vector<std::unique_ptr<Pane>> charts;
    for (int i = 1; i <= panes; ++i) {
        // The last chart stands for the section with its bodies.
        contents.bodies = i == panes ? 50 : 0;
        charts.push_back(std::make_unique<Pane>(page_width, page_height / panes, contents));
    }
    QImage bare(charts.front()->pixels(), QImage::Format_ARGB32_Premultiplied);
    std::vector<QPolygonF> lines;
    for (auto& pane : charts) lines.push_back(pane->line());

    BestTime full, overlay;
    double polylines = 1e9;
    for (auto _ : state) {
        const double seconds = full.take([&] {
            for (auto& pane : charts) pane->redraw_all();
        });
        overlay.take([&] {
            for (auto& pane : charts) pane->chart().RefreshGraph(1);
        });
        double all = 0;
        for (const QPolygonF& line : lines) all += draw_bare(bare, line);
        polylines = std::min(polylines, all);
        state.SetIterationTime(seconds);
    }
    state.counters["full_ms"] = full.seconds() * 1e3;
    state.counters["bare_ms"] = polylines * 1e3;
    state.counters["overlay_to_full"] = overlay.seconds() / full.seconds();
}
BENCHMARK(five_linked_charts)
    ->ArgNames({"percent", "pen"})
    ->ArgsProduct({{100, 125, 150, 200}, {1, 2}})
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// Two smooth curves on the whole page, against one of them with nothing around it.
void one_large_chart(benchmark::State& state) {
    Contents contents;
    contents.ratio = static_cast<double>(state.range(0)) / 100.0;
    contents.most_noise = 0;
    Pane single(page_width, page_height, contents);
    contents.calculated = true;
    contents.bodies = 10;
    Pane pane(page_width, page_height, contents);
    const QPolygonF line = pane.line();
    QImage bare(pane.pixels(), QImage::Format_ARGB32_Premultiplied);
    BestTime one, full, overlay;
    double polyline = 1e9;
    for (auto _ : state) {
        state.SetIterationTime(full.take([&] { pane.redraw_all(); }));
        overlay.take([&] { pane.chart().RefreshGraph(1); });
        one.take([&] { single.redraw_all(); });
        polyline = std::min(polyline, draw_bare(bare, line));
    }
    state.counters["full_ms"] = full.seconds() * 1e3;
    state.counters["bare_ms"] = polyline * 1e3;
    state.counters["one_curve_to_bare"] = one.seconds() / polyline;
    state.counters["overlay_to_full"] = overlay.seconds() / full.seconds();
}
BENCHMARK(one_large_chart)
    ->ArgName("percent")
    ->Arg(100)
    ->Arg(125)
    ->Arg(150)
    ->Arg(200)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void a_million_points(benchmark::State& state) {
    Contents contents;
    contents.points = 10000;
    Pane small(page_width, page_height, contents);
    contents.points = 1000000;
    Pane large(page_width, page_height, contents);
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

void a_million_points_in_random_order(benchmark::State& state) {
    Contents contents;
    contents.points = 1000000;
    contents.shuffled = true;
    Pane pane(page_width, page_height, contents);
    BestTime best;
    for (auto _ : state) state.SetIterationTime(best.take([&] { pane.redraw_all(); }));
    state.counters["best_ms"] = best.seconds() * 1e3;
}
BENCHMARK(a_million_points_in_random_order)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The most that any of a hundred steps of the wheel, or moves of a pan, allocates.
long most_allocations(int points, const std::function<void(chart::AX_Grapher&, int)>& step) {
    Contents contents;
    contents.points = points;
    Pane pane(page_width, page_height / panes, contents);
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
    Pane pane(page_width, page_height / panes, {});
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
