# Completion of tessaly for bash.

# The newest entries by their ids: the other shells also show what they hold.
_tessaly_entries() {
    tessaly list -n 50 2>/dev/null | cut -f2
}

_tessaly() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    local commands="toggle show hide list get copy paste add pin unpin delete clear actions run annotate pause resume config
        preferences bind status watch quit"
    local words=
    if ((COMP_CWORD == 1)); then
        words="$commands --help --version"
    elif [[ $previous == --type && $command == list ]]; then
        words="text link image color code file"
    elif [[ $previous == --type ]]; then
        words="text/plain text/uri-list image/png image/tiff"
    else
        case $command in
            list) words="--type --search --pinned -n --json" ;;
            get) words="--type $(_tessaly_entries)" ;;
            add) words="--type" ;;
            clear) words="--pinned" ;;
            bind) words="--yes" ;;
            status) words="--json" ;;
            config) words="list get set hotKey selectAtOpening startAtLogin historyEntries historyDays forgetOnExit
                forgetCleared encryptHistory recordedTypes neverApplications neverPatterns editorColor editorSize" ;;
            pause) words="15m 1h 8h" ;;
            copy | paste | pin | unpin | delete | actions | annotate) words=$(_tessaly_entries) ;;
            run)
                if ((COMP_CWORD == 2)); then
                    words=$(_tessaly_entries)
                else
                    local IFS=$'\n'
                    mapfile -t COMPREPLY < <(tessaly actions "${COMP_WORDS[2]}" 2>/dev/null |
                        grep -iF -- "${current//[\"\\]/}" | sed 's/[ "\\]/\\&/g')
                    return
                fi
                ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -F _tessaly tessaly
