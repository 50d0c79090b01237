#include <array>
#include <cmath>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionButton>

#include "core/body_parameters.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

class FormLayoutTest : public QObject {
    Q_OBJECT

  private slots:
    void every_box_explains_itself();
    void captions_lead_to_their_boxes();
    void tab_goes_through_the_first_page_in_reading_order();
    void nothing_is_clipped_at_the_least_size();
    void a_wide_screen_gives_its_room_to_charts_and_file();
    void nothing_overlaps_on_the_first_page();
    void the_plan_is_as_wide_as_the_curves_above_it();
    void no_number_is_cut_and_each_has_its_unit();
};

namespace {

const QStringList boxes_in_reading_order{"Text_data_locations",
                                         "Command_select_data_location_file",
                                         "Text_MAGINV_nhead",
                                         "Text_MAGINV_nstep",
                                         "Text_MAGINV_nLast",
                                         "Text_MAGINV_xpos",
                                         "Text_MAGINV_ypos",
                                         "Text_MAGINV_zpos",
                                         "Text_MAGINV_dtm",
                                         "Text_MAGINV_magpos",
                                         "Text_MAGINV_gravpos",
                                         "Text_maginv_station_spacing",
                                         "Text_maginv_minimum_station_spacing",
                                         "Command_load_locations",
                                         "Text_mag_intensity",
                                         "Text_mag_inclination",
                                         "Text_mag_declination",
                                         "Combo_smooth_filter_type",
                                         "Text_smooth_filter_width",
                                         "Text_residual_filter_width",
                                         "Check_display_total_gradient",
                                         "Text_VG_filter_width",
                                         "Text_VG_filter_step",
                                         "Text_MAGINV_basemag",
                                         "Check_float_base_0",
                                         "Text_MAGINV_basegrav",
                                         "Check_float_base_1",
                                         "Text_MAGINV_topo",
                                         "Text_MAGINV_sensor_offset",
                                         "Text_data_file",
                                         "Text_profile_grid_spacing",
                                         "Text_depth_grid_spacing",
                                         "Text_infinite_body_length",
                                         "Text_finite_body_left_clip",
                                         "Text_finite_body_right_clip",
                                         "Check_show_body_label",
                                         "Check_maintain_aspect_ratio"};

struct Opened : FormSample {
    Opened() { form->open_file(write_workspace(folder)); }
    TempFolder folder;
};

bool has_room(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->wordWrap() || label->width() >= label->sizeHint().width();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->width() >= button->fontMetrics().horizontalAdvance(button->text());
    if (const auto* list = qobject_cast<const QComboBox*>(&widget))
        return list->width() >= list->fontMetrics().horizontalAdvance(list->currentText()) + 20;
    if (const auto* box = qobject_cast<const QLineEdit*>(&widget))
        return box->width() >= box->fontMetrics().horizontalAdvance(box->text()) + 4;
    return true;
}

}  // namespace

void FormLayoutTest::every_box_explains_itself() {
    FormSample sample;
    for (const QString& name : boxes_in_reading_order) {
        const auto* control = sample.form->findChild<QWidget*>(name);
        QVERIFY2(control, qPrintable(name));
        QVERIFY2(!control->toolTip().isEmpty(), qPrintable(name));
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(name));
    }
}

void FormLayoutTest::captions_lead_to_their_boxes() {
    FormSample sample;
    QSet<QWidget*> buddies;
    for (const auto* label : sample.form->findChildren<QLabel*>())
        if (label->buddy()) buddies.insert(label->buddy());
    for (const QString& name : boxes_in_reading_order) {
        auto* control = sample.form->findChild<QWidget*>(name);
        if (qobject_cast<QLineEdit*>(control) || qobject_cast<QComboBox*>(control))
            QVERIFY2(buddies.contains(control), qPrintable(name));
    }
}

void FormLayoutTest::tab_goes_through_the_first_page_in_reading_order() {
    Opened sample;
    QWidget* at = sample.form->findChild<QWidget*>(boxes_in_reading_order.front());
    QStringList order{at->objectName()};
    for (QWidget* next = at->nextInFocusChain(); next != at; next = next->nextInFocusChain())
        if (boxes_in_reading_order.contains(next->objectName()) && (next->focusPolicy() & Qt::TabFocus))
            order << next->objectName();
    QCOMPARE(order, boxes_in_reading_order);
}

void FormLayoutTest::nothing_is_clipped_at_the_least_size() {
    Opened sample;
    sample.click("Command_load_locations");
    const QSize least = sample.form->minimumSizeHint();
    QVERIFY2(least.width() <= 1270 && least.height() <= 680,
             qPrintable(QString("%1 x %2").arg(least.width()).arg(least.height())));
    for (const QSize size : {least, QSize(1280, 800)}) {
        sample.form->resize(size);
        for (int tab = 0; tab < 2; ++tab) {
            sample.choose_tab(tab);
            QTest::qWait(120);
            for (const auto* widget : sample.form->findChildren<QWidget*>())
                if (widget->isVisible())
                    QVERIFY2(has_room(*widget),
                             qPrintable(widget->objectName() + " " + widget->property("text").toString()));
        }
    }
}

void FormLayoutTest::a_wide_screen_gives_its_room_to_charts_and_file() {
    Opened sample;
    sample.click("Command_load_locations");
    std::array<int, 2> side{}, charts{};
    for (const std::size_t wide : {0U, 1U}) {
        sample.form->resize(wide ? QSize(1912, 1000) : QSize(1280, 740));
        sample.choose_tab(1);
        QTest::qWait(100);
        side.at(wide) = sample.find<QWidget>("Grid_body").width();
        charts.at(wide) = sample.find<QWidget>("vsgraph_model_4").width();
        sample.choose_tab(0);
        QTest::qWait(20);
        for (const QString& name : boxes_in_reading_order) {
            const auto* box = sample.form->findChild<QLineEdit*>(name);
            if (box && name != "Text_data_locations")
                QVERIFY2(box->width() >= 60 && box->width() <= 170,
                         qPrintable(name + " " + QString::number(box->width())));
        }
    }
    QCOMPARE(side[1], side[0]);
    QCOMPARE(charts[1] - charts[0], 1912 - 1280);
}

void FormLayoutTest::nothing_overlaps_on_the_first_page() {
    Opened sample;
    sample.form->resize(sample.form->minimumSizeHint());
    QTest::qWait(50);
    QList<QWidget*> controls;
    for (const QString& name : boxes_in_reading_order) controls << sample.form->findChild<QWidget*>(name);
    const auto place = [&](QWidget* w) { return QRect(w->mapTo(sample.form.get(), QPoint()), w->size()); };
    for (qsizetype i = 0; i < controls.size(); ++i)
        for (qsizetype k = i + 1; k < controls.size(); ++k)
            QVERIFY2(!place(controls[i]).intersects(place(controls[k])),
                     qPrintable(controls[i]->objectName() + " and " + controls[k]->objectName()));
}

void FormLayoutTest::the_plan_is_as_wide_as_the_curves_above_it() {
    Opened sample;
    sample.click("Command_load_locations");
    sample.choose_tab(1);
    sample.click("Command_show_plan");
    for (const QSize size : {sample.form->minimumSizeHint(), QSize(1280, 800), QSize(1901, 1000)}) {
        sample.form->resize(size);
        QTest::qWait(120);
        auto& plan = sample.find<QWidget>("vsgraph_plan");
        auto& curves = sample.find<QWidget>("vsgraph_model_0");
        QVERIFY(plan.isVisible() && curves.isVisible());
        QCOMPARE(plan.mapTo(sample.form.get(), QPoint()).x(), curves.mapTo(sample.form.get(), QPoint()).x());
        QCOMPARE(plan.width(), curves.width());
    }
}

namespace {

bool is_number(const QString& text) {
    bool number = false;
    (void)text.toDouble(&number);
    return number;
}

/// A unit, or what is counted.
bool names_a_unit(const QString& text) {
    static const QRegularExpression units(
        "\\b(m|metres|nT|mGal|degrees|g/cc|stations?|taps|percent|columns?|lines?|iterations?|places?|number "
        "of data|rows?|sectors|segments|bodies|factor|ratio|no unit)\\b|°|µSI|how many",
        QRegularExpression::CaseInsensitiveOption);
    return units.match(text).hasMatch();
}

bool unit_stands_behind(const QWidget& box) {
    constexpr int near = 80;  // pixels
    for (const auto* label : box.parentWidget()->findChildren<QLabel*>()) {
        const int apart = label->x() - box.geometry().right();
        const bool beside = std::abs(label->geometry().center().y() - box.geometry().center().y()) < 8;
        if (beside && apart > 0 && apart < near && names_a_unit(label->text())) return true;
    }
    return false;
}

}  // namespace

void FormLayoutTest::no_number_is_cut_and_each_has_its_unit() {
    Modelled sample;
    sample.body(1).top.value = -73445.25F;
    sample.body(1).susc = {1234567, 1, 100.5F, 7654321};
    sample.form->news().tell(News::parameters);
    QStringList cut, without_unit;
    for (const int tab : {0, 1}) {
        sample.choose_tab(tab);
        QTest::qWait(20);
        for (const auto* box : sample.form->findChildren<QLineEdit*>()) {
            if (!box->isVisible() || !is_number(box->text())) continue;
            const QRect room = box->rect().adjusted(2, 0, -2, 0);
            if (box->fontMetrics().horizontalAdvance(box->text()) > room.width())
                cut << box->objectName() + " " + box->text();
            if (!names_a_unit(box->toolTip()) && !unit_stands_behind(*box))
                without_unit << box->objectName() + " " + box->toolTip();
        }
        for (const auto* label : sample.form->findChildren<QLabel*>()) {
            const bool digits = label->text().contains(QRegularExpression("[0-9]"));
            if (!label->isVisible() || !digits || label->wordWrap() || label->objectName() == "StatusBar_1")
                continue;
            if (label->fontMetrics().horizontalAdvance(label->text()) > label->width())
                cut << label->objectName() + " " + label->text();
        }
    }
    QCOMPARE(cut.join("; "), QString());
    QCOMPARE(without_unit.join("; "), QString());
    for (int row = edit::row_first_parameter; row <= edit::body_row_count; ++row) {
        if (sample.shown(row, edit::grid_value).isEmpty() || row == param_rem_q) continue;
        const QString tip = sample.cell(row, edit::grid_value).data(Qt::ToolTipRole).toString();
        const QString value = sample.shown(row, edit::grid_value);
        QVERIFY2(tip.contains(value) && names_a_unit(tip.mid(tip.indexOf(value))), qPrintable(tip));
    }
}

QObject* make_form_layout_test() {
    return new FormLayoutTest;
}

}  // namespace anomalis::window

#include "form_layout_test.moc"
