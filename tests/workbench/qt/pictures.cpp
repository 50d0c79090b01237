#include <QFileInfo>
#include <QPushButton>
#include <QTabWidget>

#include "workbench/qt/form_sample.h"
#include "workbench/qt/form_tests.h"

namespace anomalis {

namespace {

constexpr int settle = 250;  // ms for the layout to come to rest

void keep(FormSample& sample, const QString& folder, const QString& name) {
    QTest::qWait(settle);
    sample.form->grab().save(folder + "/" + name + ".png");
}

}  // namespace

void keep_pictures(const QString& folder, const QString& workspaces) {
    const QStringList paths = workspaces.split(':', Qt::SkipEmptyParts);
    std::vector<ExampleFile> examples;
    for (const QString& path : paths)
        examples.push_back({path.toStdString(), QFileInfo(path).completeBaseName().toStdString()});
    for (const QSize size : {QSize(1280, 800), QSize(1920, 1080)}) {
        const QString suffix = "_" + QString::number(size.width());
        FormSample start(examples);
        start.form->resize(size);
        keep(start, folder, "start_data" + suffix);
        start.choose_tab(1);
        keep(start, folder, "start_model" + suffix);
        for (const QString& path : paths) {
            const QString name = QFileInfo(path).completeBaseName();
            FormSample sample;
            sample.form->resize(size);
            sample.form->open_example(path.toStdString());
            keep(sample, folder, name + "_model" + suffix);
            sample.find<QPushButton>("Command_show_plan").click();
            keep(sample, folder, name + "_plan" + suffix);
            sample.choose_tab(0);
            keep(sample, folder, name + "_data" + suffix);
        }
    }
}

}  // namespace anomalis
