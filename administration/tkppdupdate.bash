# Completion of tkppdupdate's command line for bash (bash-completion 2).

_tkppdupdate_options() {
    case $1 in
        update) echo "--device-uri --queue --output --in-place --diff --without-device \
            --require-device --ask-postscript --only --skip --all-updaters --load --help" ;;
        values) echo "--queue --ppd --device-uri --require-device --ask-postscript --only --skip \
            --all-updaters --load --help" ;;
        sync) echo "--all --exclude --server --wait --status-uri --status-uris --dry-run --explain \
            --diff --jobs --time-limit --backup --keep-all --json --page-size --ask-postscript --accept \
            --exit-code --quiet --only --skip --all-updaters --load --help" ;;
        updaters | status) echo "--load --help" ;;
        restore) echo "--backup --server --wait --help" ;;
        report) echo "--html --all --server --load --help" ;;
        *) echo "--help" ;;
    esac
}

# The words that the one before the cursor asks for; fails where it asks for none.
_tkppdupdate_values() {
    case $1 in
        --only | --skip) COMPREPLY=($(compgen -W "$(tkppdupdate updaters 2>/dev/null)" -- "$2")) ;;
        --queue | --exclude) COMPREPLY=($(compgen -W "$(lpstat -e 2>/dev/null)" -- "$2")) ;;
        --accept) COMPREPLY=($(compgen -W "busy unreachable unsupported" -- "$2")) ;;
        --backup) _filedir -d ;;
        --ppd) _filedir ppd ;;
        --load) _filedir so ;;
        --html) _filedir html ;;
        --output | --status-uris) _filedir ;;
        --device-uri) COMPREPLY=($(compgen -W "ipp:// ipps:// snmp:// socket:// file:" -- "$2")) ;;
        --server | --wait | --jobs | --time-limit | --status-uri) COMPREPLY=() ;;
        *) return 1 ;;
    esac
}

_tkppdupdate() {
    local cur prev words cword
    _init_completion -n : || return
    local command=${words[1]}
    if ((cword == 1)); then
        COMPREPLY=($(compgen -W "update values updaters status sync restore report --load --help --version" -- "$cur"))
        return
    fi
    _tkppdupdate_values "$prev" "$cur" && return
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$(_tkppdupdate_options "$command")" -- "$cur"))
        return
    fi
    case $command in
        update | updaters) _filedir ppd ;;
        report) _filedir json ;;
        sync | restore) COMPREPLY=($(compgen -W "$(lpstat -e 2>/dev/null)" -- "$cur")) ;;
    esac
} &&
    complete -F _tkppdupdate tkppdupdate
