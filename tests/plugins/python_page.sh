#!/usr/bin/env bash
# The Python page: its wheel is built and installed, its program and its commands run.
# Usage: python_page.sh SOURCE_FOLDER BUILD_FOLDER PYTHON
set -euo pipefail
# shellcheck source=tests/plugins/pages.sh
source "$(dirname "${BASH_SOURCE[0]}")/pages.sh"
enter_copy "$1" "$2"
PATH=$(dirname "$3"):$PATH

run_page docs/python.md
expect_title_on out/film.mp4 out/titled.mp4 examples/hello.json 320x180

# The program of the page, and the same over the same ground by the tool.
awk '/^```python$/ { on = 1; next } /^```/ { on = 0 } on' docs/python.md > out/program.py
cat >> out/program.py << 'MORE'
import json
picture.tofile("out/drawn.raw")
json.dump({"frame": "1280x720", "strings": [
    {"text": "Hello", "size": 160, "bold": True, "face": {"color": "#FFE9A8", "to": "#FF8A00"},
     "shadow": {"offset": [6, 8], "blur": 6}, "in": {"effect": "slide-left"}, "hold": 2,
     "out": {"effect": "fade", "seconds": 0.5}},
    {"runs": ["with ", {"text": "runs", "italic": True}, " of text"], "size": 48, "shadow": "#000000",
     "anchor": "bottom", "margin": 10}]}, open("out/same.json", "w"))
MORE
out/env/bin/python out/program.py
tool_frames out/wanted.raw out/same.json --from 1.5 --to 1.54 --fps 25 --background 203048
expect_equal "the page's program" out/drawn.raw out/wanted.raw
