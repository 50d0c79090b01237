"""The guide: as HTML for a browser (builder html) and for the workbench's own viewer (builder qthelp).

docs/CMakeLists.txt runs both and tells the version of the project.
"""
import pathlib

project = "Anomalis"
author = "The Anomalis developers"
copyright = author

extensions = ["myst_parser"]
myst_heading_anchors = 4  # a heading is linked to as on a forge: page.md#its-words
source_suffix = {".md": "markdown"}
smartquotes = False  # words stay as they are keyed, and are found so
exclude_patterns = ["*_head.md", "architecture.md"]

html_theme = "furo"
html_title = "Anomalis"
html_static_path = ["style"]
html_css_files = ["guide.css"]
html_use_index = False
html_copy_source = False
html_show_sourcelink = False
html_show_sphinx = False
html_show_copyright = False
html_permalinks_icon = "#"
pygments_style = "default"

qthelp_basename = "anomalis"
qthelp_namespace = "anomalis.guide"

# Older versions of Sphinx bring these along for extensions that we do not have.
unused_scripts = ("jquery.js", "underscore.js", "_sphinx_javascript_frameworks_compat.js")


def drop_unused_scripts(app):
    builder = app.builder
    if hasattr(builder, "script_files"):
        builder.script_files = [each for each in builder.script_files
                                if not str(each.filename).endswith(unused_scripts)]


def remove_unused_scripts(app, failure):
    for name in unused_scripts:
        (pathlib.Path(app.outdir) / "_static" / name).unlink(missing_ok=True)


def add_downloads(app, failure):
    """Files that pages link to go into the help file too."""
    if app.builder.name != "qthelp" or failure:
        return
    folder = pathlib.Path(app.outdir)
    files = sorted(path.relative_to(folder) for path in folder.glob("_downloads/**/*") if path.is_file())
    project = folder / f"{qthelp_basename}.qhp"
    listed = "".join(f"<file>{path}</file>\n" for path in files)
    project.write_text(project.read_text("utf-8").replace("</files>", listed + "</files>"), "utf-8")


def setup(app):
    app.connect("builder-inited", drop_unused_scripts)
    app.connect("build-finished", remove_unused_scripts)
    app.connect("build-finished", add_downloads)
    return {"parallel_read_safe": True}
