#include "window/tutorials/snapshot.h"

#include <stdexcept>

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QSignalBlocker>

namespace anomalis::tutorials {

namespace {

constexpr int most_other_pixels = 20;

int other_pixels(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (one.pixel(x, y) != other.pixel(x, y)) ++count;
    return count;
}

/// Boxes show another folder as long as it lives.
class HiddenFolder {
  public:
    HiddenFolder(QWidget& place, const QString& folder) {
        for (QLineEdit* box : place.findChildren<QLineEdit*>()) {
            if (!box->text().contains(folder)) continue;
            kept_.emplace_back(box, box->text());
            show(*box, box->text().replace(folder, "~"));
        }
    }
    ~HiddenFolder() {
        for (const auto& [box, text] : kept_) show(*box, text);
    }
    HiddenFolder(const HiddenFolder&) = delete;
    HiddenFolder& operator=(const HiddenFolder&) = delete;

  private:
    static void show(QLineEdit& box, const QString& text) {
        const QSignalBlocker quiet(box);
        box.setText(text);
    }
    std::vector<std::pair<QLineEdit*, QString>> kept_;
};

}  // namespace

QImage picture_of(QWidget& place, const QString& part, const QString& folder) {
    QWidget* shown = &place;
    if (!part.isEmpty()) shown = place.findChild<QWidget*>(part);
    if (!shown || !shown->isVisible())
        throw std::runtime_error("there is no part " + part.toStdString() + " to take a picture of");
    const HiddenFolder hidden(place, folder);
    return shown->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QString handle_picture(const QImage& picture, const QString& path, Pictures what) {
    if (what == Pictures::write) {
        QDir().mkpath(QFileInfo(path).path());
        return picture.save(path, "PNG", 0) ? QString() : "cannot write " + path;
    }
    QImage kept;
    if (!kept.load(path)) return "there is no picture " + path;
    kept = kept.convertToFormat(QImage::Format_RGB32);
    if (kept.size() != picture.size()) return path + " is of another size than the window";
    if (what == Pictures::look) return {};
    const int others = other_pixels(kept, picture);
    return others <= most_other_pixels
               ? QString()
               : QString("%1 is not what the window shows: %2 pixels differ").arg(path).arg(others);
}

}  // namespace anomalis::tutorials
