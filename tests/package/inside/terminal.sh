# Inside the bare system: manual, completion, examples, the module for Python.
# shellcheck shell=bash
for program in anomalis anomalis-batch; do
    man --where $program
    [ "$(man $program | wc -l)" -gt 20 ]
    [ -s /usr/share/bash-completion/completions/$program ]
done
[ -s /usr/share/zsh/vendor-completions/_anomalis-batch ]
[ -s /usr/share/fish/vendor_completions.d/anomalis-batch.fish ]
completed=$(bash -c '. /usr/share/bash-completion/bash_completion
    _completion_loader anomalis-batch
    COMP_WORDS=(anomalis-batch inv) COMP_CWORD=1 COMP_LINE="anomalis-batch inv" COMP_POINT=18
    $(complete -p anomalis-batch | sed "s/.*-F \([^ ]*\).*/\1/") anomalis-batch inv anomalis-batch
    echo "${COMPREPLY[*]}"')
[[ $completed == *invert* ]]

[ -s /usr/share/doc/anomalis/html/index.html ]
[ -s /usr/share/anomalis/anomalis.qch ]
[ -s /usr/share/doc/anomalis/examples/dyke_swarm.axm ]
python3 -c '
import anomalis
model = anomalis.Workspace.read("/usr/share/anomalis/examples/dyke_swarm.axm")
model.load()
print("anomalis", anomalis.__version__, len(model.distances), "stations")'
