#include "window/shell/model_news.h"

#include <utility>

#include <QScopedValueRollback>

namespace anomalis::window {

void ModelNews::tell(WhatChanged what) {
    pending_ |= what;
    if (telling_) return;
    const QScopedValueRollback telling(telling_, true);
    while (pending_) emit model_changed(std::exchange(pending_, {}));
}

}  // namespace anomalis::window
