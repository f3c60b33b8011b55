# Completion of events-query(1) for fish.

# Several names can be separated by commas, and "!" leaves one out.
function __events_query_names
    command -q events-query || return
    set -l word (commandline -ct | string replace -r -- '^--\w+=' '')
    set -l before (string match -r -- '^.*[,!]' "$word")
    command events-query --catalog 2>/dev/null |
        string replace -rf -- '^ *[0-9]+ ([A-Z0-9_]+)$' "$before\$1"
end

complete -c events-query -s e -l event -x -a '(__events_query_names)' -d 'events of a kind'
complete -c events-query -s g -l grep -x -d 'events whose name or detail matches'
complete -c events-query -s S -l since -x -d 'from a time on'
complete -c events-query -s U -l until -x -d 'up to a time'
complete -c events-query -l year -x -d 'year of the last event'
complete -c events-query -s n -l number -x -d 'only the newest'
complete -c events-query -s C -l context -x -d 'also the events before and after'
complete -c events-query -s r -l reverse -d 'newest first'
complete -c events-query -s f -l follow -d 'also what comes from now on'
complete -c events-query -s c -l count -x -a 'event detail reason log day hour' -d 'how many by a value'
complete -c events-query -s m -l merge -d 'all logs in one order of time'
complete -c events-query -l name -x -d 'names of the logs in a folder'
complete -c events-query -s o -l output -x -a 'table lines csv json html' -d 'how events are shown'
complete -c events-query -l color -a 'auto always never' -d 'whether the table has colours'
complete -c events-query -l progress -d 'show how far the reading has come'
complete -c events-query -l check -d 'what is damaged'
complete -c events-query -l catalog -d 'list the known events'
complete -c events-query -s h -l help -d 'show a help page'
complete -c events-query -l version -d 'show the version'
