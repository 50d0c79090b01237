#pragma once

#include <array>
#include <span>
#include <string>

#include "core/body_parameters.h"
#include "core/model_body.h"

namespace anomalis::edit {

struct Workbench;

struct ParameterValue {
    ParamCode code;
    double value;
};

/// Type and shape of a body alone: what it looks like, without what was calculated of it.
ModelBody shape_of(const ModelBody& body);

/// The current body while a hand drags it: its parameters move from where the hand took hold and can all be
/// put back. What the fit may vary does not bind the hand.
class BodyDrag {
  public:
    /// Takes hold of the current body; there must be one.
    explicit BodyDrag(Workbench& workbench);

    /// The body as it was when the hand took hold.
    const ModelBody& start() const { return start_; }
    /// Every parameter as at the start but these. A tied pipe's susceptibility follows its depth. True when
    /// anything differs from what was there before.
    bool set(std::span<const ParameterValue> values);
    /// Something stands otherwise than at the start.
    bool moved();
    /// Ends the drag with what was set: one step named "`what` of body 3", none when nothing moved.
    void keep(const std::string& what);
    /// Puts everything back, bit for bit.
    void give_up();

  private:
    using Values = std::array<BodyParam, body_parameter_count>;
    ModelBody& body();
    static Values values(const ModelBody& body);
    void put_back();

    Workbench& workbench_;
    int number_;
    ModelBody start_;
};

}  // namespace anomalis::edit
