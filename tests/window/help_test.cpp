#include <memory>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>
#include <QTreeView>

#include "core/body_parameters.h"
#include "flow/guide_file.h"
#include "window/form_tests.h"
#include "window/help/form_guide.h"
#include "window/help/guide_book.h"
#include "window/help/guide_page.h"
#include "window/help/guide_places.h"
#include "window/help/guide_search.h"
#include "window/help/help_controller.h"
#include "window/modelled_form.h"
#include "window/shell/form_field.h"
#include "window/shell/form_fit.h"
#include "window/shell/form_load_report.h"
#include "window/shell/form_uncertainty.h"

namespace anomalis::window {

class HelpTest : public QObject {
    Q_OBJECT

  private slots:
    void every_place_has_its_heading_in_the_guide();
    void a_more_special_name_comes_first();
    void links_and_pictures_of_the_guide_are_there();
    void books_do_not_hinder_each_other();
    void a_guide_that_is_missing_says_where_it_was_looked_for();
    void contents_lead_to_their_place_and_back();
    void pictures_are_no_wider_than_the_page();
    void a_text_is_found_on_all_pages();
    void a_search_goes_from_place_to_place();
    void the_key_opens_the_guide_at_what_has_the_focus();
    void a_form_that_waits_for_an_answer_has_the_guide_too();
    void every_control_says_what_it_is_for();
    void a_parameter_is_explained_with_its_sketch();
};

namespace {

QStringList guide() {
    const std::string folder = QApplication::applicationDirPath().toStdString();
    return {QString::fromStdString(flow::find_guide_file(folder))};
}

/// The contents are read by a thread of their own.
QAbstractItemModel& filled_contents(FormGuide& form) {
    QAbstractItemModel& model = *form.findChild<QTreeView*>("List_guide_contents")->model();
    if (!QTest::qWaitFor([&] { return model.rowCount() > 0; })) throw std::runtime_error("no contents");
    QTest::qWait(1);
    return model;
}

QModelIndex entry_of(QAbstractItemModel& model, const QString& title) {
    return model.match(model.index(0, 0), Qt::DisplayRole, title, 1, Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
}

/// What takes a click or the focus, but parts of other controls and what Qt puts beside them.
bool is_interactive(const QWidget& widget) {
    if (widget.objectName().startsWith("qt_")) return false;
    for (const QWidget* parent = widget.parentWidget(); parent; parent = parent->parentWidget())
        if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QLineEdit*>(parent) ||
            qobject_cast<const QAbstractSpinBox*>(parent) || qobject_cast<const QTabBar*>(parent) ||
            qobject_cast<const QAbstractScrollArea*>(parent) || parent->objectName().contains("Scroll_"))
            return false;
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QAbstractSlider*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) ||
           qobject_cast<const QAbstractItemView*>(&widget) || widget.objectName().startsWith("vsgraph_") ||
           widget.objectName().startsWith("Image_splitter") || widget.objectName().startsWith("HScroll_") ||
           widget.objectName().startsWith("VScroll_");
}

QStringList silent_ones(QWidget& form) {
    QStringList silent;
    for (QWidget* widget : form.findChildren<QWidget*>())
        if (is_interactive(*widget) && whats_this(*widget, {1, 1}).isEmpty())
            silent << QString("%1 %2").arg(widget->metaObject()->className(), widget->objectName());
    return silent;
}

}  // namespace

void HelpTest::every_place_has_its_heading_in_the_guide() {
    const GuideBook book(guide());
    QVERIFY2(book.is_open(), qPrintable(book.failure()));
    QVERIFY(book.texts().size() > 20);
    for (const GuidePlace& place : guide_places()) {
        const QString page = place.spot.page;
        QString html = QString::fromUtf8(book.data(book.place_of(page)));
        QVERIFY2(!html.isEmpty(), place.spot.page);
        if (page.contains('#')) {
            const qsizetype at = html.indexOf("id=\"" + page.section('#', 1) + '"');
            QVERIFY2(at > 0, place.spot.page);
            html = html.mid(at);
        }
        QCOMPARE(words_of_page(html.mid(html.indexOf(QRegularExpression("<h[1-6]>"))).section("</h", 0, 0)),
                 QString(place.spot.heading));
    }
    QCOMPARE(QString(guide_spot(nullptr).heading), QString("The window"));
    QVERIFY(!book.data(book.place_of("tutorials/index")).isEmpty());
}

void HelpTest::a_more_special_name_comes_first() {
    const auto places = guide_places();
    for (std::size_t i = 0; i < places.size(); ++i)
        for (std::size_t k = i + 1; k < places.size(); ++k)
            QVERIFY2(!QString(places[k].name).startsWith(places[i].name), places[k].name);
}

void HelpTest::links_and_pictures_of_the_guide_are_there() {
    const GuideBook book(guide());
    const QRegularExpression targets("<(?:a|img)[^>]* (?:href|src)=\"([^\"]+)\"");
    int count = 0;
    for (const GuideText& text : book.texts()) {
        auto each = targets.globalMatch(QString::fromUtf8(book.data(text.page)));
        while (each.hasNext()) {
            const QUrl target = text.page.resolved(QUrl(each.next().captured(1)));
            if (target.scheme().startsWith("http")) continue;
            QVERIFY2(!book.data(target).isEmpty(), qPrintable(text.title + ": " + target.toString()));
            ++count;
        }
    }
    QVERIFY(count > 50);
}

void HelpTest::books_do_not_hinder_each_other() {
    const auto first = std::make_unique<GuideBook>(guide());
    {
        const GuideBook second(guide());
        QVERIFY(second.is_open());
        QVERIFY(!second.data(second.place_of("reference/fitting")).isEmpty());
    }
    QVERIFY(!first->data(first->place_of("reference/fitting#limits")).isEmpty());
    QVERIFY(first->data(first->place_of("reference/nothing")).isEmpty());
}

void HelpTest::a_guide_that_is_missing_says_where_it_was_looked_for() {
    const TempFolder folder;
    const QString gone = QString::fromStdString(folder.path("anomalis.qch"));
    FormGuide form({gone});
    form.open_at("reference/fitting#limits");
    const QString told = form.findChild<GuidePage*>("Text_guide")->toPlainText();
    QVERIFY2(told.contains(gone) && told.contains("install"), qPrintable(told));
    folder.write("anomalis.qch", "no such thing");
    QVERIFY(GuideBook({gone}).failure().contains(gone));
}

void HelpTest::contents_lead_to_their_place_and_back() {
    FormGuide form(guide());
    form.open_at("reference/charts");
    auto& page = *form.findChild<GuidePage*>("Text_guide");
    auto& contents = *form.findChild<QTreeView*>("List_guide_contents");
    auto& back = *form.findChild<QAbstractButton*>("Command_guide_back");
    QAbstractItemModel& model = filled_contents(form);
    QCOMPARE(contents.currentIndex().data().toString(), QString("Charts"));
    const QModelIndex limits = entry_of(model, "Limits");
    QCOMPARE(limits.parent().data().toString(), QString("Fitting"));
    emit contents.activated(limits);
    QCOMPARE(page.source().fragment(), QString("limits"));
    QVERIFY2(page.verticalScrollBar()->value() > 0, "the page stands at its section");
    QCOMPARE(contents.currentIndex().data().toString(), QString("Limits"));
    back.click();
    QVERIFY(page.source().path().endsWith("charts.html"));
    QCOMPARE(contents.currentIndex().data().toString(), QString("Charts"));
    emit page.anchorClicked(QUrl("nothing.html"));
    QVERIFY2(page.toPlainText().contains("nothing.html"), "a page that is not there says so");
}

void HelpTest::pictures_are_no_wider_than_the_page() {
    FormGuide form(guide());
    form.open_at("reference/charts");
    auto& page = *form.findChild<GuidePage*>("Text_guide");
    int pictures = 0;
    for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next())
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (!format.isImageFormat()) continue;
            const auto image =
                page.loadResource(QTextDocument::ImageResource, QUrl(format.toImageFormat().name()))
                    .value<QImage>();
            QVERIFY(!image.isNull() && image.deviceIndependentSize().width() <= page.viewport()->width());
            ++pictures;
        }
    QVERIFY(pictures > 0);
    QVERIFY(page.document()->size().width() <= page.viewport()->width());
}

void HelpTest::a_text_is_found_on_all_pages() {
    const std::vector<GuideText> texts{{QUrl("a"), "Limits", "What holds a fit: the limits and the ground."},
                                       {QUrl("b"), "Fitting", "Limits and limits of a fit."},
                                       {QUrl("c"), "Files", "Nothing of the kind; ground only."}};
    const auto limits = search_guide(texts, " LIMITS ");
    QCOMPARE(limits.size(), 2U);
    QVERIFY2(limits[0].page == QUrl("a"), "a title counts more than a text");
    QVERIFY(limits[1].around.startsWith("Limits and"));
    const auto both = search_guide(texts, "ground limits");
    QCOMPARE(both.size(), 1U);
    QCOMPARE(both[0].marked, QString("ground"));
    QVERIFY(search_guide(texts, "magnet").empty());
    QVERIFY(search_guide(texts, "  ").empty());
    QCOMPARE(words_of_page("<html><head><title>No</title></head><body><p>a <code><span>b</span>c</code>"
                           "</p><p>x &amp;lt; &gt;</p></body>"),
             QString("a bc x &lt; >"));
}

void HelpTest::a_search_goes_from_place_to_place() {
    FormGuide form(guide());
    form.open_at("index");
    auto& page = *form.findChild<GuidePage*>("Text_guide");
    auto& words = *form.findChild<QLineEdit*>("Text_guide_find");
    auto& list = *form.findChild<QListWidget*>("List_guide_found");
    const auto& answer = *form.findChild<QLabel*>("Label_guide_answer");
    QTest::keyClicks(&words, "xylophone");
    QTest::keyClick(&words, Qt::Key_Return);
    QCOMPARE(answer.text(), QString("Not in the guide"));
    words.setText("susceptibility");
    QTest::keyClick(&words, Qt::Key_Return);
    QVERIFY(list.isVisible() && list.count() > 2);
    QCOMPARE(page.textCursor().selectedText().toLower(), QString("susceptibility"));
    QVERIFY(!page.extraSelections().isEmpty());
    const QUrl first = page.source();
    for (int step = 0; step < 200 && page.source() == first; ++step) QTest::keyClick(&words, Qt::Key_Return);
    QVERIFY2(page.source() != first, "after its last place the next page");
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(page.textCursor().selectedText().toLower(), QString("susceptibility"));
    words.clear();
    QVERIFY(!list.isVisible());
    QVERIFY(page.extraSelections().isEmpty());
}

void HelpTest::the_key_opens_the_guide_at_what_has_the_focus() {
    Modelled sample;
    sample.choose_tab(0);
    sample.type("Text_mag_intensity", "4200", false);
    sample.trigger("menu_guide");
    auto* guide = sample.form->findChild<FormGuide*>();
    QVERIFY(guide && guide->isVisible());
    auto& page = *guide->findChild<GuidePage*>("Text_guide");
    QVERIFY(page.source().path().endsWith("reference/place_and_field.html"));
    QVERIFY2(sample.workspace().field.intensity != 4200, "what is half typed stays so");
    QCOMPARE(sample.text("Text_mag_intensity"), QString("4200"));
    sample.form->activateWindow();
    sample.choose_tab(1);
    sample.click_cell(param_dip, edit::grid_value);
    QVERIFY(sample.editor());
    sample.editor()->setFocus();
    sample.trigger("menu_guide");
    QVERIFY(page.source().path().endsWith("reference/bodies.html"));
    QCOMPARE(sample.form->findChildren<FormGuide*>().size(), 1);
    QCOMPARE(sample.find<QAction>("menu_guide").shortcut(), QKeySequence(Qt::Key_F1));
    sample.trigger("menu_tutorials");
    QVERIFY(page.source().path().endsWith("tutorials/index.html"));
}

void HelpTest::a_form_that_waits_for_an_answer_has_the_guide_too() {
    Modelled sample;
    bool seen = false;
    QTimer::singleShot(0, qApp, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        QTest::keyClick(dialog, Qt::Key_F1);
        auto* guide = dialog->findChild<FormGuide*>();
        seen = guide && guide->isVisible() && guide->isEnabled();
        if (seen)
            QVERIFY(guide->findChild<GuidePage*>("Text_guide")->source().path().endsWith("transform.html"));
        dialog->reject();
    });
    sample.find<QAbstractButton>("Command_define_observed_transform").click();
    QVERIFY(seen);
}

void HelpTest::every_control_says_what_it_is_for() {
    Modelled sample;
    QCOMPARE(silent_ones(*sample.form).join("; "), QString());
    FormGuide form(guide());
    FormLoadReport report;
    Form_field field(sample.workspace());
    Form_fit fit(nullptr);
    Form_uncertainty uncertainty(nullptr);
    for (QWidget* each : std::initializer_list<QWidget*>{&form, &report, &field, &fit, &uncertainty})
        QCOMPARE(each->objectName() + ": " + silent_ones(*each).join("; "), each->objectName() + ": ");
    // What is asked for by a click is answered, also on a chart and for the key.
    auto& chart = sample.find<QWidget>("vsgraph_model_4");
    QHelpEvent asked(QEvent::QueryWhatsThis, {5, 5}, chart.mapToGlobal(QPoint(5, 5)));
    asked.ignore();
    QApplication::sendEvent(&chart, &asked);
    QVERIFY(asked.isAccepted());
    QVERIFY(whats_this(chart, {5, 5}).contains("Guide: Charts"));
}

void HelpTest::a_parameter_is_explained_with_its_sketch() {
    Modelled sample;
    const QPoint dip = sample.grid().visualRect(sample.cell(param_dip, edit::grid_value)).center();
    const QString words = whats_this(*sample.grid().viewport(), dip);
    QVERIFY(words.contains("<img"));
    QVERIFY(words.contains("Guide: Bodies"));
}

QObject* make_help_test() {
    return new HelpTest;
}

}  // namespace anomalis::window

#include "help_test.moc"
