# Puts the settings and their values into a completion: reads colours.tsv and settings.tsv
# (tab-separated, first line the names of the columns), then the template, in which it replaces the
# line "@SETTINGS@" and the word "@KEYS@".

BEGIN { FS = "\t" }

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

file == 2 {
    keys = keys (keys == "" ? "" : " ") $1
    words = valueWords($2, $3)
    if (words != "")
        cases = cases "    " $1 ") printf '%s\\n'" words " ;;\n"
    next
}

$0 == "@SETTINGS@" { printf "%s", cases; next }

{
    sub(/@KEYS@/, keys)
    print
}

END { if (keys == "") exit 1 }
