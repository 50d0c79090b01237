#pragma once

#include "edit/body_form.h"
#include "edit/body_grid.h"
#include "edit/line_sample.h"
#include "forward/shape/reference_point.h"
#include "model/stale.h"

namespace anomalis::edit {

/// Which of a body's responses are out of date.
struct Cleared {
    bool mag, grav;
    explicit Cleared(const ModelBody& body)
        : mag(!body.mag_response_valid), grav(!body.grav_response_valid) {}
    Cleared(bool m, bool g) : mag(m), grav(g) {}
    bool operator==(const Cleared&) const = default;
};

/// A loaded line with three sheets at 500, 1200 and 1900 m; body 2 is the current one and nothing is marked
/// as changed.
struct BodySample : LineSample {
    explicit BodySample(bool with_bodies = true) {
        load();
        if (with_bodies) {
            add_body(500, 60);
            add_body(1200, 40);
            add_body(1900, 20);
        }
        for (int i = 1; i <= workspace().body_count; ++i) {
            ModelBody& b = body(i);
            forward::update_body_reference_point(workspace(), static_cast<double>(b.distance.value), b.east,
                                                 b.north);
        }
        workbench.view.current_body = 2;
        calm();
    }

    ModelBody& body(int number) { return workspace().body(number); }
    ModelBody& current() { return *current_body(workbench); }
    /// Everything is calculated and nothing is marked as changed.
    void calm() {
        session.model_changed = false;
        workbench.unsaved = false;
        model::find_stale(workspace());
        for (ModelBody& b : workspace().bodies) b.mag_response_valid = b.grav_response_valid = true;
    }
    /// What is found to be out of date at the next calculation.
    Cleared cleared(int number) {
        model::find_stale(workspace());
        return Cleared(body(number));
    }
    bool changed() const { return session.model_changed; }
};

}  // namespace anomalis::edit
