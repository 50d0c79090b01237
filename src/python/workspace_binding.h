#pragma once

#include <memory>
#include <pybind11/pybind11.h>

#include "python/workspace_object.h"

namespace anomalis::python {

using WorkspaceClass = pybind11::class_<WorkspaceObject, std::shared_ptr<WorkspaceObject>>;

/// The class Workspace with its line, its model and its files.
WorkspaceClass define_workspace(pybind11::module_& module);
/// Its numbers as views of numpy, and what there is to know of the line.
void define_line(WorkspaceClass& type);
/// What is done with it: fit, find, uncertainty, and what these give.
void define_steps(pybind11::module_& module, WorkspaceClass& type);

/// Loads the line of a workspace and calculates its model. Raises Fault with what was told.
void load_line(WorkspaceObject& object);
/// A workspace file as it is read; not loaded.
std::shared_ptr<WorkspaceObject> read_workspace(const std::string& path);

}  // namespace anomalis::python
