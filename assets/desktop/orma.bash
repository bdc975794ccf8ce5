# Completion for orma, orma-edit and orma-setup. Commands and options are asked of the programs themselves.

# _orma_words PROGRAM [COMMAND...]: what its help names at the begin of a line
_orma_words() {
    "$@" --help 2>/dev/null | awk '
        /^[A-Za-z]+:$/ { part = $1 }
        part == "Subcommands:" && /^  [a-z]/ { print $1 }
        part == "Options:" && /^  -/ {
            count = split($1, names, ",")
            for (i = 1; i <= count; ++i) if (names[i] ~ /^--/) print names[i]
            if ($2 ~ /^--/) print $2
        }'
}

_orma() {
    local word=${COMP_WORDS[COMP_CWORD]} command=() i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
            --home | --audio | --hardware | --trace) ((++i)) ;;
            [a-z]*) command+=("${COMP_WORDS[i]}") ;;
        esac
    done
    [[ ${command[0]-} != help ]] || command=()
    local words=()
    mapfile -t words < <(_orma_words "$1" "${command[@]}")
    [[ ${#command[@]} -le 1 ]] || mapfile -t -O "${#words[@]}" words < <(_orma_words "$1" "${command[0]}")
    mapfile -t COMPREPLY < <(compgen -W "${words[*]}" -- "$word")
    # Where no command is due, files are.
    if [[ ${#command[@]} -gt 0 && $word != -* ]]; then
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -o filenames -F _orma orma

_orma_edit() {
    local word=${COMP_WORDS[COMP_CWORD]}
    if [[ $word == -* ]]; then
        local words=()
        mapfile -t words < <(_orma_words "$1")
        mapfile -t COMPREPLY < <(compgen -W "${words[*]}" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.opr' -- "$word")
    fi
}
complete -o filenames -F _orma_edit orma-edit

_orma_setup() {
    local words=()
    mapfile -t words < <(_orma_words "$1")
    mapfile -t COMPREPLY < <(compgen -W "${words[*]}" -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -o filenames -o dirnames -F _orma_setup orma-setup
