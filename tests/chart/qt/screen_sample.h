#pragma once

#include <QImage>

#include "chart/qt/screen_device.h"

namespace anomalis::chart {

/// A surface of so many pixels with a mapping, white, ready to be drawn on.
struct Screen {
    ScreenDevice device;
    Screen(int width, int height, double ratio = 1.0) {
        device.resize(QSize(width, height), ratio);
        device.set_mapping(screen_mapping(height * units_per_screen_pixel));
        device.select_layer(DrawingDevice::Layer::surface);
        device.clear(white, 1);
    }
    QImage picture() {
        device.present();
        return device.picture();
    }
};

inline bool is_dark(QRgb pixel) {
    return qGray(pixel) < 128;
}

}  // namespace anomalis::chart
