# Completion of events-query(1) for bash. Needs nothing but bash itself, 4.0 or newer.

# Several names can be separated by commas, and "!" leaves one out. Any case is accepted.
_events_query_names() {
    local word=${1#[\'\"]} before='' line
    local typed=$word
    if [[ $word == *[,!]* ]]; then
        typed=${word##*[,!]}
        before=${word%"$typed"}
    fi
    typed=${typed^^}
    while IFS= read -r line; do
        if [[ $line =~ ^\ *[0-9]+\ ([A-Z0-9_]+)$ && ${BASH_REMATCH[1]} == "$typed"* ]]; then
            COMPREPLY+=("$before${BASH_REMATCH[1]}")
        fi
    done < <(command events-query --catalog 2> /dev/null)
}

_events_query() {
    local word=${COMP_WORDS[COMP_CWORD]}
    local before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()

    # The equals sign of --option=argument is a separate word unless COMP_WORDBREAKS lacks it.
    if [[ $word == = ]]; then
        word=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}=
    fi

    # Long options can be shortened, and letters grouped before one that takes an argument.
    if [[ $before =~ ^(--e[a-z]*=?|-[fmrh]*e)$ ]]; then
        _events_query_names "$word"
    elif [[ $before =~ ^(--o[a-z]*=?|-[fmrh]*o)$ ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'table lines csv json html' -- "$word")
    elif [[ $before =~ ^(--cou[a-z]*=?|-[rmh]*c)$ ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'event detail reason log day hour' -- "$word")
    elif [[ $before =~ ^--col[a-z]*=$ ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$word")
    elif [[ $before =~ ^(--([gsuyn]|con)[a-z]*=?|-[fmrh]*[gSUnC])$ ]]; then
        return
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '
            -e --event -g --grep -S --since -U --until --year -n --number -C --context
            -r --reverse -f --follow -m --merge --name -c --count -o --output --color --progress --check
            --catalog
            -h --help --version' -- "$word")
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}

complete -F _events_query events-query
