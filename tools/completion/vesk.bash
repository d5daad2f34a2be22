# bash completion for vesk. The commands, options, services, operations and
# records come from vesk itself (its help and `vesk ops --json`), so the
# completion knows what the installed program knows.

# The words of vesk's output that match a pattern, one a line.
_vesk_words() {
    local program=$1 pattern=$2
    shift 2
    "$program" "$@" 2>/dev/null | grep -oE -- "$pattern" | sort -u
}

# The values of one key of `vesk ops --json` ("service", "operation", ...).
_vesk_ops() {
    "$1" ops --json 2>/dev/null | sed -nE "s/^ *\"$2\": *\"([^\"]*)\".*/\\1/p" | sort -u
}

# The words of the line up to the cursor, split at blanks only: bash also
# splits at ':' and '=', which would cut a record's name into pieces.
_vesk_line_words() {
    local line=${COMP_LINE:0:COMP_POINT}
    read -ra _vesk_words_so_far <<<"$line"
    [[ -z "$line" || "$line" == *[[:space:]] ]] && _vesk_words_so_far+=("")
}

# bash replaces only the part of the word after its last ':' or '='.
_vesk_trim_word_breaks() {
    local cur=$1 prefix
    if [[ "$cur" == *[:=]* ]]; then
        prefix=${cur%"${cur##*[:=]}"}
        COMPREPLY=("${COMPREPLY[@]#"$prefix"}")
    fi
}

_vesk() {
    COMPREPLY=()
    local -a _vesk_words_so_far
    _vesk_line_words
    _vesk_complete "${_vesk_words_so_far[@]}"
    _vesk_trim_word_breaks "${_vesk_words_so_far[-1]}"
}

_vesk_complete() {
    local -a words=("$@")
    local program=${words[0]}
    local cword=$((${#words[@]} - 1))
    local cur=${words[cword]}
    local prev=""
    ((cword > 0)) && prev=${words[cword - 1]}

    # The options that take a value, from the help: their value is a file,
    # a URL or a number, never a command.
    case "$prev" in
    --config | --cacert)
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        return
        ;;
    --url)
        mapfile -t COMPREPLY < <(compgen -S = -W "$(_vesk_ops "$program" service)" -- "$cur")
        compopt -o nospace 2>/dev/null
        return
        ;;
    esac

    # The command and its arguments so far, options and their values left out.
    local command="" i word
    local -a arguments=()
    for ((i = 1; i < cword; ++i)); do
        word=${words[i]}
        case "$word" in
        --config | --url | --base | --cacert | --timeout | --connect-timeout | --listen | \
            --concurrency | --duration | --count | --scenario | --operation | --status | \
            --since | --until | --where | --limit | --exactly | --at-least | --at-most)
            ((++i))
            ;;
        -*) ;;
        *)
            if [[ -z "$command" ]]; then command=$word; else arguments+=("$word"); fi
            ;;
        esac
    done

    if [[ "$cur" == -* ]]; then
        # A command's usage lists its own options and those of every command.
        local -a usage=(--help)
        [[ -n "$command" ]] && usage=(help "$command")
        mapfile -t COMPREPLY < <(compgen -W "$(_vesk_words "$program" '(^|[ ,])--?[a-z][a-z-]*' \
            "${usage[@]}" | tr -d ' ,')" -- "$cur")
        return
    fi
    if [[ -z "$command" ]]; then
        local commands
        commands=$("$program" --help 2>/dev/null | sed -n '/^Commands:/,/^$/p' |
            sed -nE 's/^  ([a-z][a-z-]*).*/\1/p')
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$cur")
        return
    fi

    case "$command" in
    call | bench)
        case ${#arguments[@]} in
        0) mapfile -t COMPREPLY < <(compgen -W "$(_vesk_ops "$program" service)" -- "$cur") ;;
        1)
            local operations
            operations=$("$program" ops --json 2>/dev/null | tr -d '\n' | grep -oE \
                "\"operation\": *\"[^\"]*\"[^}]*\"service\": *\"${arguments[0]}\"" |
                sed -nE 's/^"operation": *"([^"]*)".*/\1/p')
            mapfile -t COMPREPLY < <(compgen -W "$operations" -- "$cur")
            ;;
        2)
            if [[ "$cur" == @* ]]; then
                mapfile -t COMPREPLY < <(compgen -P @ -f -- "${cur#@}")
            fi
            ;;
        esac
        ;;
    record)
        ((${#arguments[@]} == 0)) &&
            mapfile -t COMPREPLY < <(compgen -W "$(_vesk_ops "$program" request) $(_vesk_ops "$program" response)" -- "$cur")
        ;;
    emulator)
        if ((${#arguments[@]} == 0)); then
            mapfile -t COMPREPLY < <(compgen -W "$("$program" help emulator 2>/dev/null |
                sed -nE 's/^Usage: vesk emulator \[OPTIONS\] (.*)/\1/p' | tr -c 'a-z\n' ' ')" -- "$cur")
        elif [[ ${arguments[0]} == journal && ${#arguments[@]} == 1 ]]; then
            mapfile -t COMPREPLY < <(compgen -W "count clear" -- "$cur")
        elif [[ ${arguments[0]} == verify ]]; then
            mapfile -t COMPREPLY < <(compgen -W "$(_vesk_ops "$program" operation)" -- "$cur")
        fi
        ;;
    help)
        ((${#arguments[@]} == 0)) &&
            mapfile -t COMPREPLY < <(compgen -W "$("$program" --help 2>/dev/null |
                sed -n '/^Commands:/,/^$/p' | sed -nE 's/^  ([a-z][a-z-]*).*/\1/p')" -- "$cur")
        ;;
    openapi)
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        ;;
    esac
}
complete -F _vesk vesk
