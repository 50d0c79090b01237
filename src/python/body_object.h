#pragma once

#include <memory>
#include <pybind11/pybind11.h>
#include <string>
#include <vector>

#include "core/model_body.h"

namespace anomalis::python {

class WorkspaceObject;

/// A Body of Python: one by itself, or a body of a workspace as it stands there.
class BodyObject {
  public:
    explicit BodyObject(ModelBody body) : own_(std::move(body)) {}
    BodyObject(std::shared_ptr<WorkspaceObject> workspace, int number)
        : workspace_(std::move(workspace)), number_(number) {}

    /// Raises Fault when its workspace has it no more.
    ModelBody& body();
    int number() const { return number_; }  ///< in its workspace, from 1; 0 by itself
    const std::shared_ptr<WorkspaceObject>& workspace() const { return workspace_; }

  private:
    std::shared_ptr<WorkspaceObject> workspace_;
    int number_ = 0;
    ModelBody own_;
};

/// What a file holds of a body; nothing that was calculated.
ModelBody plain_copy(const ModelBody& body);

/// Copies of a sequence of Body. Raises TypeError for anything else in it.
std::vector<ModelBody> bodies_of(const pybind11::iterable& bodies);
/// As Body objects of their own.
pybind11::tuple as_tuple(const std::vector<ModelBody>& bodies);

void define_body(pybind11::module_& module);

}  // namespace anomalis::python
