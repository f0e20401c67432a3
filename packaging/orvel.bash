# Completion of orvel for bash: options, then sessions.
_orvel() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "-e -j" -- "$word")
        return
    fi
    compopt -o filenames 2>/dev/null # quotes names; fails outside a completion, as in tests
    mapfile -t COMPREPLY < <(compgen -f -X '!*.ini' -- "$word"; compgen -d -- "$word")
}
complete -F _orvel orvel
