"""What a stub of types names for everybody."""
import ast


def public(names):
    return {name for name in names if not name.startswith("_")}


def names_in(body):
    """Public functions, classes and attributes that stand in a body of statements."""
    names = set()
    for node in body:
        if isinstance(node, (ast.FunctionDef, ast.ClassDef)):
            names.add(node.name)
        elif isinstance(node, ast.AnnAssign):
            names.add(node.target.id)
    return public(names)
