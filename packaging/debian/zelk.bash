# Completion of zelk for bash: its options, folders and the kinds of file that it opens.
_zelk() {
    local word="${COMP_WORDS[COMP_CWORD]}"
    compopt -o filenames 2>/dev/null
    case "$word" in
        -*) COMPREPLY=($(compgen -W '--help --version --new-window' -- "$word")) ;;
        *) mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -- "$word" | grep -iE '\.(swf|xml|zelk)$') ;;
    esac
}
complete -F _zelk zelk
