#pragma once

#include <optional>

#include <QString>

class QPrinter;
class QWidget;

namespace anomalis::chart {

/// What a picture is to be called. `proposal` is a name without a folder; `filter` is of Qt's form.
struct SaveQuestion {
    QString title, filter, extension, proposal;
};

/// What the chart's menu asks of the person. The default shows Qt's dialogs; a test answers by itself.
class ChartDialogs {
  public:
    virtual ~ChartDialogs() = default;
    virtual std::optional<QString> save_path(QWidget* parent, const SaveQuestion& question);
    /// The path with the format's ending, which is appended when it is missing.
    static QString with_extension(const QString& path, const QString& extension);
    virtual bool ask(QWidget* parent, const QString& question);
    virtual void message(QWidget* parent, const QString& text);
    /// An export or a print is done; `path` is its file, "" for paper.
    virtual void done(QWidget* parent, const QString& text, const QString& path);
    /// Lets the person choose a printer; false after a cancel.
    virtual bool choose_printer(QWidget* parent, QPrinter& printer);

  protected:
    /// The file dialog; "" after a cancel.
    virtual QString ask_path(QWidget* parent, const SaveQuestion& question);
};

/// A window that answers for all charts in it and in its forms, unless they have dialogs of their own.
class ChartDialogsHost {
  public:
    virtual ~ChartDialogsHost() = default;
    virtual ChartDialogs& chart_dialogs() = 0;
};

}  // namespace anomalis::chart
