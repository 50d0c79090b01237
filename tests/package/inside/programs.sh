# Inside the bare system, with nothing but the package of the programs.
# shellcheck shell=bash
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/tmp/run
mkdir -m 700 $XDG_RUNTIME_DIR
examples=/usr/share/anomalis/examples

anomalis-batch --version
anomalis-batch info $examples/dyke_swarm.axm | head -3
mkdir /tmp/made
for example in "$examples"/*.axm; do
    name=$(basename "$example" .axm)
    anomalis-batch forward "$example" -o "/tmp/made/$name.csv" >/dev/null
    for ending in png pdf svg emf; do
        anomalis-batch render "$example" -o "/tmp/made/$name.$ending" >/dev/null
        [ -s "/tmp/made/$name.$ending" ]
    done
done
anomalis-batch invert $examples/dyke_swarm.axm --channel mag --regional 1 -o /tmp/made/fitted.axm >/dev/null
# A coordinate system: PROJ is loaded by its name.
anomalis-batch import $examples/dyke_lines.csv --line 1060 --crs EPSG:32754 --date 1990-07-01 -o /tmp/made/lines
[ -s /tmp/made/lines/dyke_lines_1060.axm ]

# The window stays open with a workspace in it.
HOME=/tmp/home anomalis $examples/dyke_swarm.axm 2>/tmp/made/told &
window=$!
sleep 5
kill -0 $window
grep -q libQt6Widgets /proc/$window/maps
kill $window
wait $window || true
# The offscreen platform says of itself what it cannot do.
if grep -v propagateSizeHints /tmp/made/told; then exit 1; fi
