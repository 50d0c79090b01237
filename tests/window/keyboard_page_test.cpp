#include <QFile>
#include <QTest>

#include "window/form_tests.h"
#include "window/shell/shortcut_list.h"

namespace anomalis::window {

namespace {

constexpr const char* page_path = ANOMALIS_EXAMPLES "/../docs/reference/keyboard.md";
constexpr const char* head = R"(# Keyboard and mouse

*Help, Keyboard shortcuts* shows the same list in the program. Keys of the menus work wherever the focus is, but while a
box takes what is typed; the others belong to what has the focus or is under the pointer.
)";

QString keys_in_code(const QString& keys) {
    return "`" + QString(keys).replace("  ", "`, `").replace("|", "\\|") + "`";
}

}  // namespace

QString keyboard_page() {
    QString page = head;
    for (const ShortcutGroup& group : shortcut_groups()) {
        page += "\n## " + group.heading + "\n\n| Keys | What they do |\n|---|---|\n";
        for (const ShortcutLine& line : group.lines)
            page += "| " + keys_in_code(line.keys) + " | " + line.words + " |\n";
    }
    return page;
}

class KeyboardPageTest : public QObject {
    Q_OBJECT

  private slots:
    void the_guide_has_the_keys_of_the_program() {
        QFile file(page_path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY2(
            QString::fromUtf8(file.readAll()) == keyboard_page(),
            "docs/reference/keyboard.md is not the list of the program: test_window --keyboard writes it");
    }
};

void write_keyboard_page() {
    QFile file(page_path);
    if (file.open(QIODevice::WriteOnly)) file.write(keyboard_page().toUtf8());
}

QObject* make_keyboard_page_test() {
    return new KeyboardPageTest;
}

}  // namespace anomalis::window

#include "keyboard_page_test.moc"
