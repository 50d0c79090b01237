#pragma once

#include <optional>

#include <QString>

class QPrinter;
class QWidget;

namespace anomalis::chart {

/// What the chart's menu asks of the person. The default shows Qt's dialogs; a test answers by itself.
class ChartDialogs {
  public:
    virtual ~ChartDialogs() = default;
    virtual std::optional<QString> save_path(QWidget* parent, const QString& title, const QString& filter,
                                             const QString& extension);
    /// The path with the format's ending, which is appended when it is missing.
    static QString with_extension(const QString& path, const QString& extension);
    virtual bool ask(QWidget* parent, const QString& question);
    virtual void message(QWidget* parent, const QString& text);
    /// Lets the person choose a printer; false after a cancel.
    virtual bool choose_printer(QWidget* parent, QPrinter& printer);
};

}  // namespace anomalis::chart
