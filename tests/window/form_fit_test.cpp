#include "window/shell/form_fit.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QTableWidget>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/widgets/body_grid_model.h"
#include "window/widgets/correlation_picture.h"

namespace anomalis::window {

namespace {

/// A record of the model as it stands, as a fit leaves it.
FitRecord record_of(Workspace& workspace) {
    const ModelBody& body = workspace.body(1);
    const double open = FittedParameter::open, top = static_cast<double>(body.top.value);
    FitRecord fit;
    fit.date = "2024-05-06T07:08:09";
    fit.outcome = "Inversion succeeded";
    fit.first_distance = workspace.first_distance;
    fit.last_distance = workspace.last_distance;
    fit.parameters = {{1, param_top, body.top.value, 4, top - 7, top + 7},
                      {1, param_width, body.width.value, open, open, 140}};
    fit.correlation = {1, -0.93, -0.93, 1};
    fit.mag = FittedChannel{.stations = 101,
                            .rms = 3.2,
                            .noise = 1.8,
                            .chi_square = 3.1,
                            .correlation = 120,
                            .independent = 30,
                            .regional = {}};
    fit.remarks = {"residuals are correlated over 120 m: a body or the regional is missing"};
    fit.model_mark = model_mark(workspace);
    return fit;
}

struct Fitted : Modelled {
    Fitted() {
        workspace().fit = record_of(workspace());
        form->workbench().fit_stands.reset();
        form->news().tell(News::parameters);
        trigger("menu_fit_results");
        results = form->findChild<Form_fit*>();
    }
    QLabel& label(const char* name) { return *results->findChild<QLabel*>(name); }
    QTableWidget& table(const char* name) { return *results->findChild<QTableWidget*>(name); }

    Form_fit* results = nullptr;
};

}  // namespace

/// The results of the last fit, and what of them stands on the page of the model.
class FormFitTest : public QObject {
    Q_OBJECT

  private slots:
    void without_a_fit_it_says_what_makes_one();
    void a_fit_is_shown_beside_the_window_which_goes_on_working();
    void a_change_of_the_model_takes_its_place_and_a_step_back_brings_it_back();
    void it_is_there_after_reopening();
    void the_picture_names_each_cell();
    void remarks_and_intervals_stand_on_the_page_of_the_model();
    void many_parameters_are_a_picture_without_names();
};

void FormFitTest::without_a_fit_it_says_what_makes_one() {
    Modelled sample;
    QTest::keyClick(sample.form.get(), Qt::Key_R, Qt::ControlModifier);
    auto* results = sample.form->findChild<Form_fit*>();
    QVERIFY(results && results->isVisible());
    QVERIFY(!results->isModal());
    auto* words = results->findChild<QLabel*>("Label_fit_state");
    QVERIFY(words->isVisible() && words->text().contains("least squares"));
    QVERIFY(!results->findChild<QTableWidget*>("Table_fit_parameters")->isVisible());
}

void FormFitTest::a_fit_is_shown_beside_the_window_which_goes_on_working() {
    Fitted sample;
    QVERIFY(sample.results->isVisible() && !sample.results->isModal());
    QVERIFY(sample.label("Label_fit_facts").text().contains("Date: 2024-05-06 07:08:09"));
    QVERIFY(sample.label("Label_fit_remarks").text().contains("correlated over 120 m"));
    QVERIFY(sample.label("Label_fit_pairs").text().contains("top and width of body 1: -0.93"));
    QTableWidget& parameters = sample.table("Table_fit_parameters");
    QCOMPARE(parameters.rowCount(), 2);
    QCOMPARE(parameters.item(0, 0)->text(), QString("Top of body 1"));
    QCOMPARE(parameters.item(1, 2)->text(), QString("below 140"));
    QTableWidget& channels = sample.table("Table_fit_channels");
    QCOMPARE(channels.rowCount(), 1);
    QCOMPARE(channels.item(0, 2)->text(), QString("3.20 nT"));
    QVERIFY(sample.results->findChild<QWidget*>("vsgraph_residual_0")->isVisible());
    QVERIFY(!sample.results->findChild<QWidget*>("vsgraph_residual_1")->isVisible());
    sample.click("Command_show_plan");
    QVERIFY(sample.form->workbench().view.show_plan);
}

void FormFitTest::a_change_of_the_model_takes_its_place_and_a_step_back_brings_it_back() {
    Fitted sample;
    sample.key(param_dip, edit::grid_value, "71");
    QCOMPARE(sample.label("Label_fit_state").text(),
             QString("The model has changed since the fit of 2024-05-06 07:08:09"));
    QVERIFY(sample.label("Label_fit_state").isVisible());
    QVERIFY(!sample.table("Table_fit_parameters").isVisible());
    sample.trigger("menu_undo");
    QVERIFY(!sample.label("Label_fit_state").isVisible());
    QVERIFY(sample.table("Table_fit_parameters").isVisible());
}

void FormFitTest::it_is_there_after_reopening() {
    Fitted sample;
    const std::string path = sample.folder.path("fitted.axm");
    QCOMPARE(workspace_file::write_model_parameters(0, path, sample.workspace(), sample.prompts), 0);
    FormSample again;
    again.form->open_file(path);
    again.find<QAction>("menu_fit_results").trigger();
    auto* results = again.form->findChild<Form_fit*>();
    QVERIFY(results->findChild<QTableWidget*>("Table_fit_parameters")->isVisible());
    QVERIFY(results->findChild<QLabel*>("Label_fit_facts")->text().contains("2024-05-06"));
}

void FormFitTest::the_picture_names_each_cell() {
    Fitted sample;
    auto& picture = *sample.results->findChild<CorrelationPicture*>();
    sample.results->grab();
    QCOMPARE(picture.cell_words(picture.cell_middle(0, 1)), QString("top 1 and width 1: -0.93"));
    QCOMPARE(picture.cell_words(picture.cell_middle(1, 1)), QString("width 1"));
    QCOMPARE(picture.cell_words({picture.width() + 5, 5}), QString());
    const QImage shown = picture.grab().toImage();
    const auto at = [&](int row, int column) {
        const QPoint middle = picture.cell_middle(row, column) * shown.devicePixelRatio();
        return shown.pixelColor(middle);
    };
    QVERIFY(at(0, 1).blue() > at(0, 1).red());
    QVERIFY(at(0, 0).red() > at(0, 0).blue());
    QCOMPARE(picture.cell_colour(0), picture.palette().color(QPalette::Base));
}

void FormFitTest::remarks_and_intervals_stand_on_the_page_of_the_model() {
    Fitted sample;
    QVERIFY(
        sample.cell(param_top, edit::grid_value).data(BodyGridModel::error_role).toString().startsWith("±"));
    QCOMPARE(sample.cell(param_width, edit::grid_value).data(BodyGridModel::error_role).toString(),
             QString("<140"));
    sample.click("Command_toggle_invert_body");
    auto& remark = sample.find<QLabel>("Label_fit_remark");
    QVERIFY(remark.isVisible());
    QVERIFY(remark.text().contains("correlated over 120 m"));
    QVERIFY(remark.wordWrap());
    sample.key(param_dip, edit::grid_value, "71");
    QVERIFY(!remark.isVisible());
    QCOMPARE(sample.cell(param_width, edit::grid_value).data(BodyGridModel::error_role).toString(),
             QString());
}

void FormFitTest::many_parameters_are_a_picture_without_names() {
    CorrelationPicture picture;
    picture.resize(300, 300);
    show::CorrelationTable table;
    constexpr std::size_t many = 400;
    for (std::size_t i = 0; i < many; ++i) table.names.push_back("top " + std::to_string(i));
    table.coefficient.assign(many * many, 0.25);
    picture.show_table(table);
    QVERIFY(picture.grab().toImage().pixelColor(150, 150) != picture.palette().color(QPalette::Window));
    QVERIFY(picture.cell_words({200, 100}).contains("0.25"));
}

QObject* make_form_fit_test() {
    return new FormFitTest;
}

}  // namespace anomalis::window

#include "form_fit_test.moc"
