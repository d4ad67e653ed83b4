# Makes the C++ source of the tables that setting_descriptions.h declares: reads colours.tsv, then
# settings.tsv (tab-separated, first line the names of the columns).

BEGIN {
    FS = "\t"
    print "// Made from data/colours.tsv and data/settings.tsv.\n"
    print "#include \"base/translatable_text.h\""
    print "#include \"freedesktop/preferences/setting_descriptions.h\"\n"
    print "namespace quorvel::freedesktop {\nnamespace {\n"
}

function fail(what) {
    printf "%s:%d: %s\n", FILENAME, FNR, what > "/dev/stderr"
    failed = 1
    exit 1
}

# A C++ literal.
function quoted(text) {
    gsub(/\\/, "\\\\", text)
    gsub(/"/, "\\\"", text)
    return "\"" text "\""
}

# One that tools/update-messages collects for translators.
function marked(text) {
    return "translatable(" quoted(text) ")"
}

# #RRGGBB as four bytes.
function rgba(value) {
    return "std::array<std::uint8_t, 4>{0x" substr(value, 2, 2) ", 0x" substr(value, 4, 2) \
        ", 0x" substr(value, 6, 2) ", 0xFF}"
}

FNR == 1 { isOfSettings = NR > 1; next }

!isOfSettings {
    if ($1 !~ /^[0-9]+$/ || $2 == "" || $3 !~ /^(#[0-9A-F][0-9A-F][0-9A-F][0-9A-F][0-9A-F][0-9A-F])?$/)
        fail("a colour has a code, a name and a value #RRGGBB or none")
    codes = codes "    {" $1 ", " quoted($2) ", " ($3 == "" ? "std::nullopt" : rgba($3)) "},\n"
    choice = "    {" quoted($1) ", " marked($2) "},\n"
    allColours = allColours choice
    if ($3 != "")
        colours = colours choice
    next
}

{
    if (NF != 7)
        fail("a setting has seven columns")
    if ($2 !~ /^(boolean|integer|number|text|colour)$/)
        fail("unknown type: " $2)
    least = most = "std::nullopt"
    choices = "{}"
    takesPaths = "false"
    if ($3 == "colours")
        choices = "colourChoices"
    else if ($3 == "colours|calendar")
        choices = "titleColourChoices"
    else if ($3 ~ /^[0-9]+\.\.[0-9]+$/) {
        split($3, limit, "[.][.]")
        least = limit[1]
        most = limit[2]
    } else if ($3 != "") {
        choices = $1 "Choices"
        list = ""
        count = split($3, part, "|")
        for (i = 1; i <= count; ++i) {
            if (part[i] == "path") {
                takesPaths = "true"
                continue
            }
            at = index(part[i], "=")
            if (at < 2)
                fail("not VALUE=LABEL: " part[i])
            list = list "    {" quoted(substr(part[i], 1, at - 1)) ", " \
                marked(substr(part[i], at + 1)) "},\n"
        }
        ownChoices = ownChoices "constexpr SettingChoice " choices "[] = {\n" list "};\n\n"
    }
    settings = settings "    {" quoted($1) ", SettingKind::" $2 ", " least ", " most ", " choices \
        ", " takesPaths ", " quoted($4) ",\n     " quoted($5) ", " marked($6) ",\n     " marked($7) "},\n"
}

END {
    if (failed)
        exit 1
    print "constexpr SettingChoice colourChoices[] = {\n" colours "};\n"
    print "constexpr SettingChoice titleColourChoices[] = {\n" allColours "};\n"
    printf "%s", ownChoices
    print "constexpr SettingDescription settings[] = {\n" settings "};\n"
    print "constexpr ColourCode codes[] = {\n" codes "};\n"
    print "} // namespace\n"
    print "std::span<const SettingDescription> settingDescriptions() {\n    return settings;\n}\n"
    print "std::span<const ColourCode> colourCodes() {\n    return codes;\n}\n"
    print "} // namespace quorvel::freedesktop"
}
