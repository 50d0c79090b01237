#include "window/tutorials/lesson.h"

#include <stdexcept>

#include <QFile>
#include <QRegularExpression>

#include "window/tutorials/lesson_rules.h"

namespace anomalis::tutorials {

namespace {

/// A stretch of the file that is read at once: a numbered step, or a paragraph between them.
struct Stretch {
    int line = 0;
    bool numbered = false;
    QString text;
};

/// Blanks in the place of what matches; lines stay.
void blank(QString& text, const QRegularExpression& pattern) {
    for (auto match = pattern.match(text); match.hasMatch(); match = pattern.match(text))
        for (qsizetype at = match.capturedStart(); at < match.capturedEnd(); ++at)
            if (text[at] != '\n') text[at] = ' ';
}

class LessonReader {
  public:
    explicit LessonReader(const QString& path) { lesson_.path = path; }

    Lesson read(const QStringList& lines) {
        for (const Stretch& stretch : stretches(lines)) take_told(stretch.text);
        for (const Stretch& stretch : stretches(lines)) take(stretch);
        return lesson_;
    }

  private:
    static std::vector<Stretch> stretches(const QStringList& lines);
    void take_told(const QString& text);
    void take(const Stretch& stretch);
    void take_table(const Stretch& stretch);
    void look_for_loose(const Stretch& stretch, qsizetype from, qsizetype to);
    int line_at(const Stretch& stretch, qsizetype at) const {
        return stretch.line + static_cast<int>(stretch.text.left(at).count('\n'));
    }
    void fault(int line, const QString& words) {
        lesson_.faults << QString("%1:%2: %3").arg(lesson_.path).arg(line).arg(words);
    }

    Lesson lesson_;
    QStringList told_;
};

std::vector<Stretch> LessonReader::stretches(const QStringList& lines) {
    static const QRegularExpression number("^\\d+\\. ");
    std::vector<Stretch> all;
    bool open = false;
    for (int i = 0; i < lines.size(); ++i) {
        const QString& line = lines[i];
        const bool begins = number.match(line).hasMatch();
        const bool within = open && all.back().numbered && (line.isEmpty() || line.startsWith("   "));
        if (line.isEmpty() && !within) open = false;
        if (line.isEmpty() && !open) continue;
        const bool joins = open && !begins && (within || !all.back().numbered);
        if (!joins) all.push_back({i + 1, begins, {}});
        open = true;
        // Blanks for the number of the step keep the places.
        QString text = line;
        if (begins) text.replace(0, text.indexOf('.') + 1, QString(text.indexOf('.') + 1, ' '));
        all.back().text += text + '\n';
    }
    return all;
}

void LessonReader::take_told(const QString& text) {
    static const QRegularExpression told("<!--\\s*told:(.*?)-->",
                                         QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression truth("<!--\\s*truth:\\s*(\\w+)\\s*-->");
    if (const auto match = told.match(text); match.hasMatch())
        for (const QString& words : match.captured(1).split(',')) told_ << words.simplified();
    if (const auto match = truth.match(text); match.hasMatch()) lesson_.example = match.captured(1);
}

void LessonReader::take(const Stretch& stretch) {
    const bool comment = stretch.text.startsWith("<!--");
    if (stretch.text.startsWith('#') ||
        (comment && stretch.text.contains(QRegularExpression("told:|truth:"))))
        return;
    if (stretch.text.startsWith('|')) return take_table(stretch);
    if (stretch.numbered) ++lesson_.steps;
    qsizetype at = 0;
    while (const auto found = next_order(stretch.text, at, stretch.numbered)) {
        look_for_loose(stretch, at, found->begin);
        Order order = found->order;
        order.line = line_at(stretch, found->begin);
        order.step = stretch.numbered ? lesson_.steps : 0;
        lesson_.orders.push_back(order);
        at = found->end;
    }
    look_for_loose(stretch, at, stretch.text.size());
}

/// What no order has taken may hold no code in a step, and no digits anywhere.
void LessonReader::look_for_loose(const Stretch& stretch, qsizetype from, qsizetype to) {
    static const QRegularExpression code("`[^`]+`"), digits("[^\\s(]*\\d[^\\s)]*"), link("\\]\\([^)]*\\)");
    QString rest = stretch.text.mid(from, to - from);
    if (stretch.numbered)
        if (const auto match = code.match(rest); match.hasMatch())
            fault(line_at(stretch, from + match.capturedStart()), "nothing is done with " + match.captured());
    blank(rest, code);
    blank(rest, link);
    for (const QString& words : told_)
        blank(rest, QRegularExpression(QRegularExpression::escape(words).replace("\\ ", "\\s+")));
    if (const auto match = digits.match(rest); match.hasMatch())
        fault(line_at(stretch, from + match.capturedStart()),
              "nobody looks at the number in \"" + match.captured() + "\"");
}

/// Rows below a head that names the columns.
void LessonReader::take_table(const Stretch& stretch) {
    const auto cells = [](const QString& row) {
        QStringList all = row.simplified().split('|');
        for (QString& cell : all) cell = cell.simplified().remove('`');
        return all.mid(1, all.size() - 2);
    };
    const QStringList rows = stretch.text.split('\n', Qt::SkipEmptyParts);
    const QStringList head = cells(rows.at(0));
    const auto body = head.indexOf("Body"), parameter = head.indexOf("Parameter");
    for (int i = 2; i < rows.size(); ++i) {
        const QStringList row = cells(rows[i]);
        const int line = stretch.line + i;
        for (int c = 0; c < row.size() && c < head.size(); ++c) {
            const bool window = head[c] == "In the window", truth = head[c] == "Made from";
            if ((window || truth) && body >= 0 && parameter >= 0)
                lesson_.orders.push_back(
                    {truth ? Deed::truth : Deed::value, line, row.at(body), row[c], row.at(parameter)});
            else if (Stretch cell{line, false, row[c]}; c != body && c != parameter)
                look_for_loose(cell, 0, cell.text.size());
        }
    }
}

}  // namespace

Lesson read_lesson(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("no tutorial " + path.toStdString());
    return LessonReader(path).read(QString::fromUtf8(file.readAll()).split('\n'));
}

}  // namespace anomalis::tutorials
