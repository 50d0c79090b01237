#pragma once

#include <memory>
#include <optional>

#include <QTimer>
#include <QWidget>

#include "show/survey_map.h"

namespace anomalis::chart {
class GrapherWidget;
}  // namespace anomalis::chart

namespace anomalis::window {

/// The map of a survey with its ramp; a click chooses the nearest line.
class SurveyMapView : public QWidget {
    Q_OBJECT

  public:
    explicit SurveyMapView(QWidget* parent = nullptr);
    ~SurveyMapView() override;

    /// The index must live as long as it is shown; null for none.
    void show_survey(const intake::SurveyIndex* index);
    void choose(std::optional<std::size_t> line, std::optional<std::size_t> piece);
    chart::GrapherWidget& map_widget() { return *map_; }
    const show::SurveyMap& map() const { return *survey_; }

  signals:
    void line_chosen(std::size_t line);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    class Events;
    void draw();

    chart::GrapherWidget* map_;
    chart::GrapherWidget* bar_;
    std::unique_ptr<show::SurveyMap> survey_;
    std::unique_ptr<Events> events_;
    const intake::SurveyIndex* index_ = nullptr;
    std::optional<std::size_t> line_, piece_;
    QTimer resized_;
};

}  // namespace anomalis::window
