# Puts the settings and their values into a completion: reads colours.tsv and settings.tsv
# (tab-separated, first line the names of the columns), then the template, in which it replaces the
# line "@SETTINGS@" and the words "@KEYS@" and "@VALUE_OPTIONS@".
# The variable "shell" is the language of the template: bash, zsh or fish.

BEGIN {
    FS = "\t"
    # The options that are followed by a value.
    valueOptions = "--calendars --calendar-wait --preferences --controller --width --now" \
        " --timezone --locale --font --foundation-version --bundle --log -o --output --scale" \
        " --text-scale --appearance --background --layer --anchor --margin --do --reset" \
        " --subscribe --unsubscribe --title --colour --user"
    if (shell != "fish") # the patterns of a case
        gsub(/ /, " | ", valueOptions)
}

FNR == 1 { ++file }
file < 3 && FNR == 1 { next }

file == 1 {
    allColours = allColours " " $2
    if ($3 != "")
        colours = colours " " $2
    next
}

# The words that complete a value; those with blanks and paths are left out.
function valueWords(type, values,   part, count, i, at, words) {
    if (type == "boolean")
        return " true false"
    if (values == "colours")
        return colours
    if (values == "colours|calendar")
        return allColours
    count = split(values, part, "|")
    for (i = 1; i <= count; ++i) {
        at = index(part[i], "=")
        if (at > 1 && part[i] !~ /^\//)
            words = words " " substr(part[i], 1, at - 1)
    }
    return words
}

# The branch that prints the values of a setting.
function branch(key, words) {
    if (shell == "fish")
        return "        case " key "\n            printf '%s\\n'" words "\n"
    return "    " key ") printf '%s\\n'" words " ;;\n"
}

file == 2 {
    keys = keys (keys == "" ? "" : " ") $1
    words = valueWords($2, $3)
    if (words != "")
        branches = branches branch($1, words)
    next
}

$0 == "@SETTINGS@" { printf "%s", branches; next }

{
    sub(/@KEYS@/, keys)
    sub(/@VALUE_OPTIONS@/, valueOptions)
    print
}

END { if (keys == "") exit 1 }
