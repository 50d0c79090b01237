#pragma once

#include <memory>

#include <QAction>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>

#include "edit/line_sample.h"
#include "support/temp_folder.h"
#include "window/shell/form_anomalis.h"
#include "workspace_file/axm.h"

namespace QTest {
template <>
inline char* toString(const std::vector<std::string>& texts) {
    QString joined;
    for (const std::string& text : texts) joined += "[" + QString::fromStdString(text) + "] ";
    return qstrdup(qPrintable(joined));
}
}  // namespace QTest

namespace anomalis::window {

/// The window over a session of its own: its dialogs are answered by script.
struct FormSample {
    explicit FormSample(const std::vector<flow::ExampleFile>& examples = {},
                        const std::string& settings_path = {})
        : session(prompts, settings_path.empty() ? Settings() : Settings(settings_path, prompts)),
          form(std::make_unique<Form_anomalis>(session, examples)) {
        form->show();
        QTest::qWait(1);
    }

    template <class Control>
    Control& find(const char* name) {
        Control* control = form->findChild<Control*>(name);
        if (!control) throw std::runtime_error(std::string("no control ") + name);
        return *control;
    }
    QString text(const char* name) { return find<QLineEdit>(name).text(); }
    /// The text of a panel of the status bar.
    QString status(int panel);

    /// Types over what a box holds; leaves it with Enter.
    void type(const char* name, const QString& words, bool leave = true) {
        auto& box = find<QLineEdit>(name);
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, words);
        if (leave) QTest::keyClick(&box, Qt::Key_Return);
    }
    void click(const char* name) { QTest::mouseClick(&find<QWidget>(name), Qt::LeftButton); }
    void choose_tab(int index) { find<QTabWidget>("Tab_model").setCurrentIndex(index); }
    int tab() { return find<QTabWidget>("Tab_model").currentIndex(); }

    ScriptedPrompts prompts;
    Session session;
    std::unique_ptr<Form_anomalis> form;
};

inline QString FormSample::status(int panel) {
    return find<QWidget>(("StatusBar_" + std::to_string(panel)).c_str()).property("text").toString();
}

/// A workspace file with its data file in a folder: a line of both channels with two sheets under it.
inline std::string write_workspace(const TempFolder& folder, int stations = edit::LineSample::stations) {
    edit::LineSample sample(stations);
    Workspace& w = sample.workspace();
    w.definition.data_file = folder.write("line.dat", edit::east_line_text(stations));
    w.display.show_axes = 1;
    sample.add_body(1260, 60).name = "Dyke";
    sample.add_body(1807, 20).name = "Second";
    const std::string path = folder.path("line.axm");
    if (workspace_file::write_model_parameters(0, path, w, sample.prompts) != 0)
        throw std::runtime_error("no workspace");
    return path;
}

}  // namespace anomalis::window
