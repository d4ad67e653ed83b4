# Completes the options of quorvel-settings and quorvel-open in bash, as their help lists them.

_quorvel_listed_options() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    if [[ ${COMP_WORDS[COMP_CWORD - 1]} == --preferences ]]; then
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
    elif [[ $word == -* ]]; then
        local options
        options=$("${COMP_WORDS[0]}" --help 2>/dev/null |
            grep -oE '^  (-[a-zA-Z], )?--[a-z-]+' | grep -oE -- '--[a-z-]+')
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    fi
}

complete -o filenames -F _quorvel_listed_options quorvel-settings quorvel-open
