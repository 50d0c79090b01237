// Works on the model for a long time and tells the memory before and after: neither bars nor undo may gather
// anything.

#include <cstdio>

#include <QAction>

#include "core/body_parameters.h"
#include "window/shell/look.h"
#include "window_sample.h"

namespace anomalis {
namespace {

constexpr int stations = 1001;
constexpr int sheets = 10;
constexpr int scroll_steps = 10000;
constexpr int warm_up = 300;  // fills what is kept once: glyphs, pictures, the steps that can be taken back
constexpr int undo_steps = 1000;

void scroll_on(ShownWindow& window, int steps) {
    for (int step = 0; step < steps; ++step) {
        window.form->workbench().view.current_body = 1 + step % sheets;
        window.scroll(step % 2 == 0 ? param_dip : param_susc, step % 4 < 2 ? 1 : -1);
    }
}

void undo_on(ShownWindow& window, int steps) {
    for (int step = 0; step < steps; step += 2) {
        for (const char* entry : {"menu_undo", "menu_redo"}) {
            window.form->findChild<QAction*>(entry)->trigger();
            ShownWindow::settle();
        }
    }
}

template <class Work>
double grown_by(const char* what, Work&& work) {
    const double before = resident_megabytes();
    work();
    const double after = resident_megabytes();
    std::printf("%s: %.1f MB before, %.1f MB after, %+.2f MB\n", what, before, after, after - before);
    return after - before;
}

int soak() {
    const WorkFolder folder;
    ShownWindow window(write_line(folder, stations, sheets));
    scroll_on(window, warm_up);
    undo_on(window, warm_up);
    grown_by("10,000 scroll steps", [&] { scroll_on(window, scroll_steps); });
    grown_by("1,000 undo steps", [&] { undo_on(window, undo_steps); });
    std::printf("%ld messages\n", window.prompts.count());
    return 0;
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    anomalis::window::apply_look(application);
    return anomalis::soak();
}
