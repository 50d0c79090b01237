#include <functional>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QHelpEvent>
#include <QLabel>
#include <QScrollBar>
#include <QSet>
#include <QTextBlock>
#include <QTimer>
#include <QTreeWidget>

#include "core/body_parameters.h"
#include "window/form_tests.h"
#include "window/help/form_guide.h"
#include "window/help/guide_page.h"
#include "window/help/guide_places.h"
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
    void contents_lead_to_their_place_and_back();
    void a_text_is_found_from_place_to_place();
    void the_key_opens_the_guide_at_what_has_the_focus();
    void a_form_that_waits_for_an_answer_has_the_guide_too();
    void every_control_says_what_it_is_for();
    void a_parameter_is_explained_with_its_sketch();
};

namespace {

QStringList headings_of(const GuidePage& page) {
    QStringList texts;
    for (const GuideHeading& heading : page.headings()) texts << heading.text;
    return texts;
}

/// All that the formats of a page name: links, or pictures.
QStringList named_in(const GuidePage& page, const std::function<QString(const QTextCharFormat&)>& name) {
    QStringList found;
    for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next())
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QString each = name(part.fragment().charFormat());
            if (!each.isEmpty() && !found.contains(each)) found << each;
        }
    return found;
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
    const GuidePage page;
    const QStringList headings = headings_of(page);
    QVERIFY(headings.size() > 20);
    for (const GuidePlace& place : guide_places()) QVERIFY2(headings.contains(place.heading), place.name);
    QSet<QString> anchors;
    for (const GuideHeading& heading : page.headings()) anchors.insert(heading.anchor);
    QCOMPARE(anchors.size(), headings.size());
    QCOMPARE(guide_heading(nullptr), QString("The window"));
    QCOMPARE(guide_anchor("Place, date and the earth's field"), QString("place-date-and-the-earths-field"));
}

void HelpTest::a_more_special_name_comes_first() {
    const auto places = guide_places();
    for (std::size_t i = 0; i < places.size(); ++i)
        for (std::size_t k = i + 1; k < places.size(); ++k)
            QVERIFY2(!QString(places[k].name).startsWith(places[i].name), places[k].name);
}

void HelpTest::links_and_pictures_of_the_guide_are_there() {
    GuidePage page;
    for (const char* file : {"qrc:/guide/guide.md", "qrc:/guide/formulas.md"}) {
        page.setSource(QUrl(file));
        QVERIFY2(page.headings().size() > 3, file);
        const QStringList links = named_in(page, [](const QTextCharFormat& f) { return f.anchorHref(); });
        QVERIFY(!links.isEmpty());
        for (const QString& link : links) {
            const QUrl target = page.source().resolved(QUrl(link));
            if (target.scheme().startsWith("http")) continue;
            QVERIFY2(QFile::exists(":" + target.path()), qPrintable(link));
        }
        const QStringList pictures = named_in(page, [](const QTextCharFormat& f) {
            return f.isImageFormat() ? f.toImageFormat().name() : QString();
        });
        QVERIFY(!pictures.isEmpty());
        for (const QString& picture : pictures) {
            const auto image = page.loadResource(QTextDocument::ImageResource, QUrl(picture)).value<QImage>();
            QVERIFY2(!image.isNull() && image.width() <= 640, qPrintable(picture));
        }
    }
}

void HelpTest::contents_lead_to_their_place_and_back() {
    FormGuide guide;
    guide.open_at("Charts");
    auto& page = *guide.findChild<GuidePage*>("Text_guide");
    auto& contents = *guide.findChild<QTreeWidget*>("List_guide_contents");
    auto& back = *guide.findChild<QAbstractButton*>("Command_guide_back");
    QCOMPARE(contents.currentItem()->text(0), QString("Charts"));
    const int before = page.verticalScrollBar()->value();
    QVERIFY(before > 0);
    QTreeWidgetItem* limits = contents.findItems("Limits", Qt::MatchExactly | Qt::MatchRecursive).value(0);
    QVERIFY2(limits && limits->parent() && limits->parent()->text(0) == "Fitting",
             "a section of its chapter");
    emit contents.itemActivated(limits, 0);
    QCOMPARE(page.source().fragment(), QString("limits"));
    QVERIFY(page.verticalScrollBar()->value() > before);
    back.click();
    QCOMPARE(page.source().fragment(), QString("charts"));
    page.setSource(page.source().resolved(QUrl("formulas.md")));
    QVERIFY2(contents.findItems("Charts", Qt::MatchExactly).isEmpty(), "the contents are those of the page");
    back.click();
    QCOMPARE(contents.currentItem()->text(0), QString("Charts"));
}

void HelpTest::a_text_is_found_from_place_to_place() {
    FormGuide guide;
    guide.show();
    auto& page = *guide.findChild<GuidePage*>("Text_guide");
    auto& words = *guide.findChild<QLineEdit*>("Text_guide_find");
    QTest::keyClicks(&words, "koenigsberger");
    QTest::keyClick(&words, Qt::Key_Return);
    const auto said = [&] {
        for (const auto* label : guide.findChildren<QLabel*>())
            if (label->text() == "Not in the guide") return true;
        return false;
    };
    QVERIFY(said());
    words.setText("susceptibility");
    QTest::keyClick(&words, Qt::Key_Return);
    QVERIFY(!said());
    const int first = page.textCursor().position();
    QTest::keyClick(&words, Qt::Key_Return);
    QVERIFY(page.textCursor().position() > first);
    QCOMPARE(page.textCursor().selectedText().toLower(), QString("susceptibility"));
}

void HelpTest::the_key_opens_the_guide_at_what_has_the_focus() {
    Modelled sample;
    sample.choose_tab(0);
    sample.type("Text_mag_intensity", "4200", false);
    sample.trigger("menu_guide");
    auto* guide = sample.form->findChild<FormGuide*>();
    QVERIFY(guide && guide->isVisible());
    auto& page = *guide->findChild<GuidePage*>("Text_guide");
    QCOMPARE(page.source().fragment(), QString("place-date-and-the-earths-field"));
    QVERIFY2(sample.workspace().field.intensity != 4200, "what is half typed stays so");
    QCOMPARE(sample.text("Text_mag_intensity"), QString("4200"));
    sample.form->activateWindow();
    sample.choose_tab(1);
    sample.click_cell(param_dip, edit::grid_value);
    QVERIFY(sample.editor());
    sample.editor()->setFocus();
    sample.trigger("menu_guide");
    QCOMPARE(page.source().fragment(), QString("bodies"));
    QCOMPARE(sample.form->findChildren<FormGuide*>().size(), 1);
    QCOMPARE(sample.find<QAction>("menu_guide").shortcut(), QKeySequence(Qt::Key_F1));
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
            QCOMPARE(guide->findChild<GuidePage*>("Text_guide")->source().fragment(),
                     QString("coordinate-transform"));
        dialog->reject();
    });
    sample.find<QAbstractButton>("Command_define_observed_transform").click();
    QVERIFY(seen);
}

void HelpTest::every_control_says_what_it_is_for() {
    Modelled sample;
    QCOMPARE(silent_ones(*sample.form).join("; "), QString());
    FormGuide guide;
    FormLoadReport report;
    Form_field field(sample.workspace());
    Form_fit fit(nullptr);
    Form_uncertainty uncertainty(nullptr);
    for (QWidget* form : std::initializer_list<QWidget*>{&guide, &report, &field, &fit, &uncertainty})
        QCOMPARE(form->objectName() + ": " + silent_ones(*form).join("; "), form->objectName() + ": ");
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
