# Completion of events-viewer(1) for bash. Needs nothing but bash itself, 4.0 or newer.

_events_viewer_files() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_events_viewer() {
    local word=${COMP_WORDS[COMP_CWORD]}
    local before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()

    # The equals sign of --option=argument is a separate word unless COMP_WORDBREAKS lacks it.
    if [[ $word == = ]]; then
        word=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    # Long options can be shortened, and letters grouped before one that takes an argument.
    if [[ $before =~ ^(--i[a-z_]*|--o[a-z_]*|-[salh]*[io])$ ]]; then
        _events_viewer_files "$word"
    elif [[ ! $before =~ ^(--n[a-z]*|-[salh]*n)$ && $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '
            -s --show -a --all -l --log -h --help
            -i --input_file -o --output_file -n --number' -- "$word")
    fi
}

complete -F _events_viewer events-viewer
