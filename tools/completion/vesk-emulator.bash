# bash completion for vesk-emulator: its options come from its own help.
_vesk_emulator() {
    local program=${COMP_WORDS[0]}
    local cur=${COMP_WORDS[COMP_CWORD]}
    local prev=""
    ((COMP_CWORD > 0)) && prev=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case "$prev" in
    --db | --seed)
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        return
        ;;
    --listen | --fault)
        return
        ;;
    esac
    local options
    options=$("$program" --help 2>/dev/null | grep -oE -- '(^|[ [])--[a-z][a-z-]*' | tr -d ' [' |
        sort -u)
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
}
complete -F _vesk_emulator vesk-emulator
