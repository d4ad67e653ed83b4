# Puts the table of settings into the manual page: reads the table (tab-separated, first line the
# names of its columns), then the page, whose line "@SETTINGS@" stands for it.

BEGIN { FS = "\t" }

# As roff wants it: what is typed as a backslash or a hyphen comes out as one, and a line cannot be
# taken for a request.
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
