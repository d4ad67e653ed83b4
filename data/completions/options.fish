# Completes the options of quorvel-settings and quorvel-open in fish, as their help lists them.

function __quorvel_listed_options
    set -l words (commandline -opc)
    set -l word (commandline -ct)
    if test "$words[-1]" = --preferences
        __fish_complete_directories "$word"
    else if string match -q -- '-*' "$word"
        $words[1] --help 2>/dev/null | string match -r -g '^  (?:-[a-zA-Z], )?(--[a-z-]+)'
    end
end

complete -c quorvel-settings -f -a '(__quorvel_listed_options)'
complete -c quorvel-open -f -a '(__quorvel_listed_options)'
