# Puts the table of settings into the manual page: reads the table (tab-separated, first line the
# names of its columns), then the page, in which it replaces the line "@SETTINGS@".

BEGIN { FS = "\t" }

# Escapes a text for roff: a backslash or a hyphen is printed as typed, and no line is read as a
# request.
function roff(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    if (text ~ /^[.']/)
        text = "\\&" text
    return text
}

FNR == NR {
    if (FNR > 1 && NF != 7) {
        printf "%s:%d: a setting has seven columns\n", FILENAME, FNR > "/dev/stderr"
        failed = 1
        exit 1
    }
    if (FNR > 1)
        settings[++count] = $0
    next
}

# "integer from 0 to 10"; a list of choices is left to the text.
function typeText(type, values,   limit) {
    if (values !~ /^[0-9]+\.\.[0-9]+$/)
        return type
    split(values, limit, "[.][.]")
    return type " from " limit[1] " to " limit[2]
}

$0 == "@SETTINGS@" {
    for (i = 1; i <= count; i++) {
        split(settings[i], column, "\t")
        printf ".TP\n\\fB%s\\fR (%s, default %s)\n%s\n", roff(column[1]), \
            roff(typeText(column[2], column[3])), \
            column[4] == "" ? "empty" : "\\fI" roff(column[4]) "\\fR", roff(column[7])
    }
    next
}

{ print }

END { if (!failed && count == 0) exit 1 }
