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
    if (FNR > 1 && NF != 4) {
        printf "%s:%d: a setting has four columns\n", FILENAME, FNR > "/dev/stderr"
        failed = 1
        exit 1
    }
    if (FNR > 1)
        settings[++count] = $0
    next
}

$0 == "@SETTINGS@" {
    for (i = 1; i <= count; i++) {
        split(settings[i], column, "\t")
        printf ".TP\n\\fB%s\\fR (%s, default %s)\n%s\n", roff(column[1]), roff(column[2]), \
            column[3] == "" ? "empty" : "\\fI" roff(column[3]) "\\fR", roff(column[4])
    }
    next
}

{ print }

END { if (!failed && count == 0) exit 1 }
