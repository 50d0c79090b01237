#pragma once

#include "core/workspace.h"
#include "forward/exact/exact_axes.h"
#include "forward/polyhedron/polyhedron.h"

namespace anomalis::forward {

/// How field and magnetisation change per unit of a parameter, in the axes of the body.
struct FieldSlope {
    Point3 direction;      ///< of the ambient field
    Point3 magnetisation;  ///< demagnetised; nT with 4 pi divided out
};

/// What a body's magnetisation is made of.
class BodyField {
  public:
    /// `tensor` is the demagnetising one, or null for a body that is not demagnetised.
    BodyField(const Workspace& workspace, const ModelBody& body, const BodyFrame& frame,
              const Tensor3* tensor);

    /// With the demagnetised magnetisation.
    const ExactField& field() const { return field_; }
    bool demagnetised() const { return demagnetised_; }

    /// By a parameter that turns the axes (strike) or makes the magnetisation (susceptibility, remanence);
    /// zero by the others.
    FieldSlope slope(int param_code) const;

    /// What a change of the demagnetising tensor does to the magnetisation.
    Point3 change_by(const Tensor3& tensor_change) const;

  private:
    Point3 plain_slope(int param_code) const;
    Point3 without_own_field(const Point3& plain) const;

    const ModelBody& body_;
    ExactField field_;
    Point3 unit_;                     ///< plain magnetisation of a susceptibility of 1 micro SI
    Point3 remanent_;                 ///< direction of the remanence
    Point3 remanent_i_, remanent_d_;  ///< its derivatives by inclination and declination, a degree
    double induced_ = 0;              ///< size of the induced magnetisation
    Point3 plain_;                    ///< before the demagnetisation
    Tensor3 tensor_;
    bool demagnetised_ = false;
};

}  // namespace anomalis::forward
