# Completion of tessaly for fish.

function __tessaly_entries
    tessaly list -n 50 2>/dev/null | awk -F '\t' '{ print $2 "\t" $3 " " $5 }'
end

function __tessaly_actions
    set -l words (commandline -opc)
    tessaly actions $words[3] 2>/dev/null
end

function __tessaly_operands
    count (string match -v -- '-*' (commandline -opc))
end

set -l on_entries get copy paste pin unpin delete actions run annotate

complete -c tessaly -f
complete -c tessaly -n __fish_use_subcommand -s h -l help -d 'print a short help'
complete -c tessaly -n __fish_use_subcommand -s v -l version -d 'print the version'
complete -c tessaly -n __fish_use_subcommand -a toggle -d 'open the panel, or close it'
complete -c tessaly -n __fish_use_subcommand -a show -d 'open the panel'
complete -c tessaly -n __fish_use_subcommand -a hide -d 'close the panel'
complete -c tessaly -n __fish_use_subcommand -a list -d 'list entries'
complete -c tessaly -n __fish_use_subcommand -a get -d 'write an entry to standard output'
complete -c tessaly -n __fish_use_subcommand -a copy -d 'put an entry on the clipboard'
complete -c tessaly -n __fish_use_subcommand -a paste -d 'paste an entry into the window in front'
complete -c tessaly -n __fish_use_subcommand -a add -d 'make an entry of a text or of standard input'
complete -c tessaly -n __fish_use_subcommand -a pin -d 'keep an entry, on top'
complete -c tessaly -n __fish_use_subcommand -a unpin -d 'let it go with the others'
complete -c tessaly -n __fish_use_subcommand -a delete -d 'delete an entry'
complete -c tessaly -n __fish_use_subcommand -a clear -d 'delete all entries'
complete -c tessaly -n __fish_use_subcommand -a actions -d 'list what can be done with an entry'
complete -c tessaly -n __fish_use_subcommand -a run -d 'do something with an entry'
complete -c tessaly -n __fish_use_subcommand -a annotate -d 'open a picture in the editor'
complete -c tessaly -n __fish_use_subcommand -a pause -d 'record nothing for a while'
complete -c tessaly -n __fish_use_subcommand -a resume -d 'record again'
complete -c tessaly -n __fish_use_subcommand -a config -d 'read and change preferences'
complete -c tessaly -n __fish_use_subcommand -a preferences -d 'open the window for them'
complete -c tessaly -n __fish_use_subcommand -a bind -d 'have GNOME open the panel on the hot key'
complete -c tessaly -n __fish_use_subcommand -a status -d 'what works in this session'
complete -c tessaly -n __fish_use_subcommand -a watch -d 'print each change of the history'
complete -c tessaly -n __fish_use_subcommand -a quit -d 'end the program'

complete -c tessaly -n "__fish_seen_subcommand_from $on_entries; and test (__tessaly_operands) -eq 2" -k -a '(__tessaly_entries)'
complete -c tessaly -n '__fish_seen_subcommand_from run; and test (__tessaly_operands) -eq 3' -a '(__tessaly_actions)'
complete -c tessaly -n '__fish_seen_subcommand_from list' -l type -x -a 'text link image color code file'
complete -c tessaly -n '__fish_seen_subcommand_from list' -l search -x
complete -c tessaly -n '__fish_seen_subcommand_from list' -s n -x
complete -c tessaly -n '__fish_seen_subcommand_from list clear' -l pinned
complete -c tessaly -n '__fish_seen_subcommand_from list status' -l json
complete -c tessaly -n '__fish_seen_subcommand_from bind' -l yes
complete -c tessaly -n '__fish_seen_subcommand_from get add' -l type -x -a 'text/plain text/uri-list image/png image/tiff'
complete -c tessaly -n '__fish_seen_subcommand_from config' -a 'list get set hotKey selectAtOpening startAtLogin historyEntries historyDays forgetOnExit forgetCleared encryptHistory recordedTypes neverApplications neverPatterns editorColor editorSize'
complete -c tessaly -n '__fish_seen_subcommand_from pause' -a '15m 1h 8h'
