#pragma once

#include <vector>

#include <QString>
#include <QStringList>

// A tutorial as its own Markdown tells it. The words of a numbered step are what is done:
//
//   **Menu, Entry** or **Button**            is pressed, so often: **Button** three times
//   click the head **Column** of a table
//   click **Body** in the section            drag **Body** by `40 m` (or `10 m down`)
//   press the coarse `+` of **Depth** twice  press `Ctrl+Z`
//   key `1` into **Mag noise**               choose `slope` in **Mag regional**
//   tick **Vary**, clear **Fix**             under the name `mine.axm`; the file `line.csv`
//   **Depth** shows `285.1 m`                anything says `285.1 m`
//   `mine.axm` lies there                    ![words](picture.png) is the window as it stands then
//
// A comment in a step is read like its words. `<!-- only: NAME -->` before a picture cuts it to a part of the
// window by its object name. A table with the columns Body and Parameter tells values: of the model as it
// stands in the column "In the window", of that which the data were made from in "Made from", which the
// comment `<!-- truth: EXAMPLE -->` names. Digits that stand outside of all this need a comment
// `<!-- told: 90 %, 1 nT -->`; so nothing is told that nobody looks at.
namespace anomalis::tutorials {

enum class Deed {
    press,
    keys,
    key_in,
    choose,
    tick,
    clear,
    step,
    drag,
    click_body,
    click_head,
    save_name,
    open_name,
    shows,
    says,
    lies_there,
    only,
    picture,
    value,
    truth
};

struct Order {
    Deed deed = Deed::press;
    int line = 0;         ///< in the file, from 1
    QString what, value;  ///< what is in bold; what is in code
    QString manner;       ///< coarse, fine, section, plan; of a value its parameter
    int times = 1;
    int step = 0;  ///< the numbered step it stands in, from 1; 0 outside of them
};

struct Lesson {
    QString path, example;  ///< the file; the survey whose truth its tables tell
    std::vector<Order> orders;
    QStringList faults;  ///< "file:line: what": code that is no order, digits that nobody looks at
    int steps = 0;
};

/// Reads a tutorial; raises std::runtime_error where there is no file.
Lesson read_lesson(const QString& path);

}  // namespace anomalis::tutorials
