"""completion.py ANOMALIS-BATCH EXAMPLES [--all]: man pages and completions as man and the shells take them.

bash is always asked; with --all also man, zsh and fish, which must be there then."""
import os
import pathlib
import subprocess
import sys
import tempfile

tool, examples = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
wrong = []


def run(*words, **how):
    return subprocess.run(words, capture_output=True, text=True, timeout=120, **how)


def expect(what, got, wanted):
    if got != wanted:
        wrong.append(f"{what}: {got} in place of {wanted}")


def expect_clean(what, *words, **how):
    done = run(*words, **how)
    expect(what, (done.returncode, done.stdout.strip(), done.stderr.strip()), (0, "", ""))


# The library of completions of Debian, whose search for files is taken where it is there.
LIBRARY = "/usr/share/bash-completion/bash_completion"
ASK_BASH = r"""
source "$1"; source "$2"; shift 2
function_of=$(complete -p "$1"); function_of=${function_of#*-F }; function_of=${function_of%% *}
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMP_LINE="$*"; COMP_POINT=${#COMP_LINE}
"$function_of" "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}" 2>&1
printf '%s\n' "${COMPREPLY[@]}"
"""


def asked_of_bash(share, library, *words):
    file = share / "bash-completion/completions" / words[0]
    return sorted(run("bash", "-c", ASK_BASH, "bash", library, str(file), *words, cwd=examples).stdout.split())


def files_with(*endings):
    return sorted(file.name for file in pathlib.Path(examples).iterdir()
                  if file.is_dir() or file.name.endswith(endings))


def ask_bash(share, library="/dev/null"):
    def asked(*words):
        return asked_of_bash(share, library, *words)
    expect("commands", asked("anomalis-batch", "fin"), ["find"])
    expect("options", asked("anomalis-batch", "find", "--reg"), ["--regional"])
    expect("choices", asked("anomalis-batch", "invert", "a.axm", "--channel", ""), ["grav", "joint", "mag"])
    expect("choices behind =", asked("anomalis-batch", "invert", "--channel", "=", "j"), ["joint"])
    expect("choices right behind =", asked("anomalis-batch", "render", "--paper", "="), ["a3", "a4", "letter"])
    expect("roles", asked("anomalis-batch", "lines", "--role", "ma"), ["mag="])
    expect("nothing for a number", asked("anomalis-batch", "find", "--most", ""), [])
    expect("workspaces", asked("anomalis-batch", "info", ""), files_with(".axm"))
    expect("plans", asked("anomalis-batch", "survey", ""), files_with(".toml", ".json", ".csv"))
    expect("folders", asked("anomalis-batch", "import", "-o", "pack"), ["package"])
    expect("the workbench", asked("anomalis", "--ver"), ["--version"])
    expect("its files", asked("anomalis", "dyke_s"), ["dyke_swarm.axm", "dyke_swarm.dat"])


def ask_man(share):
    for page in sorted((share / "man/man1").iterdir()):
        done = run("man", "--warnings", "-E", "UTF-8", "-l", str(page), env={**os.environ, "MANWIDTH": "80"})
        expect(f"man {page.name}", (done.returncode, done.stderr), (0, ""))
        expect_clean(f"groff {page.name}", "groff", "-man", "-ww", "-z", "-K", "utf-8", str(page))


ASK_FISH = "source $argv[1]; complete -C \"$argv[2]\""


def ask_fish(share):
    for file in sorted((share / "fish/vendor_completions.d").iterdir()):
        expect_clean(f"fish {file.name}", "fish", "--no-execute", str(file))
    file = str(share / "fish/vendor_completions.d/anomalis-batch.fish")

    def asked(line):
        answer = run("fish", "-c", ASK_FISH, file, line, cwd=examples).stdout
        return [row.split("\t")[0] for row in answer.splitlines()]
    expect("fish: commands", asked("anomalis-batch fin"), ["find"])
    expect("fish: choices", sorted(asked("anomalis-batch invert --channel ")), ["grav", "joint", "mag"])
    expect("fish: options", asked("anomalis-batch find --regi"), ["--regional"])
    expect("fish: workspaces come first", asked("anomalis-batch info dyke_sw")[0], "dyke_swarm.axm")


# zsh completes at a terminal alone: one is played to it.
ASK_ZSH = r"""
autoload -U compinit; fpath=($1 $fpath); compinit -u -d $2
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PROMPT=; fpath=($1 \$fpath); autoload -U compinit; compinit -u -d $2; zstyle ':completion:*' list-colors"
zpty -w shell "bindkey '^I' complete-word; LISTMAX=1000; setopt no_list_beep; cd $3"
zpty -w -n shell "$4"$'\t'
repeat 40; do
    sleep 0.1
    while zpty -r -t shell piece; do answer+=$piece; done
    [[ $answer == *$5* ]] && print found && break
done
zpty -d shell
"""


def ask_zsh(share):
    functions = share / "zsh/vendor-completions"
    for file in sorted(functions.iterdir()):
        expect_clean(f"zsh {file.name}", "zsh", "-n", str(file))
    for line, answer in (("anomalis-batch fin", "anomalis-batch find"),
                         ("anomalis-batch invert --channel jo", "--channel joint"),
                         ("anomalis-batch info buried_ca", "buried_cable.axm"),
                         ("anomalis-batch find --reg", "--regional")):
        done = run("zsh", "-f", "-c", ASK_ZSH, "zsh", str(functions), str(share / "zcompdump"), examples, line, answer)
        expect(f"zsh: {line}", done.stdout.strip(), "found")


with tempfile.TemporaryDirectory() as folder:
    share = pathlib.Path(folder)
    expect_clean("writing", tool, "manual", "--into", str(share))
    ask_bash(share)
    if "--all" in sys.argv:
        ask_bash(share, LIBRARY)
        ask_man(share)
        ask_fish(share)
        ask_zsh(share)
print("\n".join(wrong))
sys.exit(1 if wrong else 0)
