# Puts the tables of colours and settings into the manual page: reads the tables (tab-separated, first
# line the names of the columns), then the page, in which it replaces the lines "@COLOURS@" and
# "@SETTINGS@".

BEGIN { FS = "\t" }

FNR == 1 { ++file }
file < 3 && FNR == 1 { next }

# A colour without a value is that of the calendar, which the page explains itself.
file == 1 {
    if ($3 != "")
        colours = colours $1 "  " $2 "\n"
    next
}

# Escapes a text for roff: a backslash or a hyphen is printed as typed, and no line is read as a
# request.
function roff(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    if (text ~ /^[.']/)
        text = "\\&" text
    return text
}

file == 2 {
    if (NF != 7) {
        printf "%s:%d: a setting has seven columns\n", FILENAME, FNR > "/dev/stderr"
        failed = 1
        exit 1
    }
    settings[++count] = $0
    next
}

$0 == "@COLOURS@" {
    printf "%s", colours
    next
}

# "integer from 0 to 10"
function typeText(type, values,   limit) {
    if (values !~ /^[0-9]+\.\.[0-9]+$/)
        return type
    split(values, limit, "[.][.]")
    return type " from " limit[1] " to " limit[2]
}

# "0: Do nothing; 1: Open the event"
function choicesText(type, values,   choice, part, text, n, k) {
    if (type != "integer" || values !~ /=/)
        return ""
    n = split(values, choice, "|")
    for (k = 1; k <= n; k++) {
        split(choice[k], part, "=")
        text = text (k > 1 ? "; " : "") part[1] ": " part[2]
    }
    return ".br\n" roff(text) ".\n"
}

$0 == "@SETTINGS@" {
    for (i = 1; i <= count; i++) {
        split(settings[i], column, "\t")
        printf ".TP\n\\fB%s\\fR (%s, default %s)\n%s\n%s", roff(column[1]), \
            roff(typeText(column[2], column[3])), \
            column[4] == "" ? "empty" : "\\fI" roff(column[4]) "\\fR", roff(column[7]), \
            choicesText(column[2], column[3])
    }
    next
}

{ print }

END { if (!failed && count == 0) exit 1 }
