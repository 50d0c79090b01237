#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "survey/map/results_map.h"

namespace anomalis::chart {
class GrapherWidget;
}  // namespace anomalis::chart
namespace anomalis::window {

/// The map of the results of a survey with its key. A click chooses the nearest line, a double click on a
/// line opens it.
class ResultsMapView : public QWidget {
    Q_OBJECT

  public:
    explicit ResultsMapView(QWidget* parent = nullptr);
    ~ResultsMapView() override;

    /// The results must live as long as they are shown; null for none. `keep_view` leaves the zoom.
    void show_results(const survey::SurveyResults* results, survey::ResultsMapMarks marks, bool keep_view);
    /// Number in the results.
    void choose(std::optional<std::size_t> line);
    chart::GrapherWidget& map_widget() { return *map_; }
    const survey::ResultsMap& map() const { return *results_map_; }

  signals:
    void line_chosen(std::size_t line);
    void line_wanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    class Events;
    void draw(bool keep_view);

    chart::GrapherWidget* map_;
    chart::GrapherWidget* key_;
    std::unique_ptr<survey::ResultsMap> results_map_;
    std::unique_ptr<Events> events_;
    const survey::SurveyResults* results_ = nullptr;
    survey::ResultsMapMarks marks_;
    std::optional<std::size_t> line_, body_;
    QTimer resized_;
};

}  // namespace anomalis::window
