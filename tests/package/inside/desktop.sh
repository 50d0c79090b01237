# Inside the bare system, on a display of its own: what a desktop does with the packages.
# shellcheck shell=bash
export DISPLAY=:7 HOME=/tmp/home XDG_CURRENT_DESKTOP=GNOME
export XDG_RUNTIME_DIR=/tmp/run
mkdir -p $HOME
mkdir -m 700 $XDG_RUNTIME_DIR
entry=/usr/share/applications/org.anomalis.Anomalis.desktop
cp /usr/share/anomalis/examples/dyke_swarm.* $HOME/
model=$HOME/dyke_swarm.axm

[ "$(xdg-mime query filetype $model)" = application/x-anomalis-workspace ]
[[ $(gio info -a standard::content-type $model) == *"content-type: application/x-anomalis-workspace"* ]]
[[ $(gio info -a standard::icon $model) == *application-x-anomalis-workspace* ]]
[[ $(gio mime application/x-anomalis-workspace) == *org.anomalis.Anomalis.desktop* ]]

Xvfb $DISPLAY -screen 0 1600x1000x24 2>/dev/null &
sleep 2
# The command of the entry, as a desktop runs it.
gio launch $entry $model &
titles() {
    xwininfo -root -tree | grep -o '"[^"]*": ("anomalis[^)]*)' || true
}
for _ in $(seq 60); do
    [[ $(titles) == *dyke_swarm* ]] && break
    sleep 0.5
done
titles | grep dyke_swarm
window=$(xdotool search --onlyvisible --name dyke_swarm | sed q)
[[ $(xprop -id "$window" WM_CLASS) == *'"Anomalis"' ]]
[[ $(xprop -id "$window" _NET_WM_ICON) == *'Icon (64 x 64)'* ]]

xdotool windowfocus "$window" key F1
for _ in $(seq 60); do
    [[ $(titles) == *[Gg]uide* ]] && break
    sleep 0.5
done
titles | grep -i guide
