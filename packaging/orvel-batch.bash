# Completion of orvel-batch for bash: options, their values, then sessions.
_orvel_batch() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} options
    COMPREPLY=()
    case $before in
    --criterion)
        mapfile -t COMPREPLY < <(compgen -W "valence fractions" -- "$word")
        return
        ;;
    --advise)
        mapfile -t COMPREPLY < <(compgen -W "3 4 5 6 7 8" -- "$word")
        return
        ;;
    --result | --table)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
        ;;
    --threads | --sigma | --amount | --fractions | --range | --spacing | --alike)
        return # a number of the user's
        ;;
    esac
    if [[ $word == -* ]]; then
        options="-e -j --threads --quiet --images --result --table --advise --json --criterion"
        options+=" --sigma --amount --fractions --range --spacing --alike --help -h --version"
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        return
    fi
    compopt -o filenames 2>/dev/null # quotes names; fails outside a completion, as in tests
    mapfile -t COMPREPLY < <(compgen -f -X '!*.ini' -- "$word"; compgen -d -- "$word")
}
complete -F _orvel_batch orvel-batch
