"""The guide as HTML: sphinx-build docs FOLDER. The version comes from the build description."""
project = "Anomalis"
author = "The Anomalis developers"
copyright = author
html_title = "Anomalis"

extensions = ["myst_parser"]
myst_heading_anchors = 4  # a heading is linked to as on a forge: page.md#its-words
source_suffix = {".md": "markdown"}
exclude_patterns = ["guide.md", "*_head.md", "architecture.md"]

html_theme = "alabaster"
html_copy_source = False
html_show_sourcelink = False
html_show_sphinx = False
