# Completes a PPD that ppdc made with what ppdc cannot express. Given the message catalogs and then
# the PPD, each a file, it writes the PPD
# - with each per-language line directly behind the line that it translates, inside its option and
#   group, so that what is removed with a group or a size takes its translations along;
# - with per-language lines for the page-size keywords that ppdc does not translate;
# - with a comment "*% A <-> B" before each series of constraints between the options A and B;
# - with unquoted words in the attributes that follow the printer, as the updates write them;
# - with the cupsVersion it is given, which ppdc writes as its own and for raster printers only;
# - without what else changes with the version of CUPS or is no longer true.
# A text without an entry in one of the catalogs ends the run: ppdc would have taken it from CUPS.

function fail(reason) {
    print "complete.awk: " reason > "/dev/stderr"
    exit 1
}

# The text between "/" and ":" of a line.
function text_of(line) {
    sub(/^[^\/]*\//, "", line)
    sub(/: *"[^"]*"$|: *[A-Za-z]+$/, "", line)
    return line
}

# What a line defines: "PageSize A4" or, for what has one translated name, "Translation PageSize".
function name_of(line) {
    if (line ~ /^\*OpenUI /) {
        sub(/^\*OpenUI \*/, "Translation ", line)
    } else if (line ~ /^\*OpenGroup: /) {
        sub(/^\*OpenGroup: /, "Translation ", line)
    } else {
        sub(/^\*/, "", line)
    }
    sub(/\/.*/, "", line)
    return line
}

function translate(line, name, text,    i, language) {
    text = text_of(line)
    for (i = 1; i <= language_count; i++) {
        language = languages[i]
        if (!((language, name) in translations))
            fail("no " language " line for " name)
        if (!((language, text) in catalog))
            fail("no " language " text for " text)
        print "*" language "." name "/" translations[language, name] ": \"\""
    }
}

function explain_constraint(line,    words, first, second) {
    split(line, words, " ")
    first = words[2]
    second = words[3] ~ /^\*/ ? words[3] : words[4]
    if (first SUBSEP second == explained || second SUBSEP first == explained)
        return
    explained = first SUBSEP second
    if (second == "*Duplex")
        print "*% Duplex <-> " substr(first, 2)
    else
        print "*% " substr(first, 2) " <-> " substr(second, 2)
}

FILENAME ~ /\.po$/ {
    language = FILENAME
    sub(/^.*\//, "", language)
    sub(/\.po$/, "", language)
    if (/^msgid "/)
        catalog[language, substr($0, 8, length($0) - 8)]
    next
}

/^\*cupsLanguages:/ {
    codes = $0
    gsub(/^[^"]*"|"$/, "", codes)
    language_count = split(codes, languages, " ")
    lines[++line_count] = "*cupsVersion: " cups_version
}

/^\*[a-z][a-z]\.[A-Za-z0-9]+ / {
    language = substr($0, 2, 2)
    name = name_of("*" substr($0, 5))
    translations[language, name] = text_of($0)
    if (name ~ /^PageSize |^Translation PageSize$/) {
        keyword_count = split("PageRegion ImageableArea PaperDimension", keywords, " ")
        for (i = 1; i <= keyword_count; i++) {
            other = name
            sub(/PageSize/, keywords[i], other)
            translations[language, other] = text_of($0)
        }
    }
    next
}

/^\*% End of / { next }
/^\*%%%% Created by / { $0 = "*%%%% Created by the CUPS PPD Compiler and samples/generate." }
/^\*cupsVersion:/ { next }
/^\*(Zr|BPE)[A-Za-z0-9]*: "/ { gsub(/"/, "") }
{ lines[++line_count] = $0 }

END {
    # English is in the lines themselves.
    if (languages[1] != "en")
        fail("English is not the first language")
    for (i = 2; i <= language_count; i++)
        languages[i - 1] = languages[i]
    language_count--

    for (i = 1; i <= line_count; i++) {
        line = lines[i]
        if (line ~ /^\*UIConstraints:/)
            explain_constraint(line)
        print line
        if (length(line) > 255)
            fail("longer than a PPD line may be: " line)
        if (line ~ /^\*(OpenUI \*|OpenGroup: |[A-Za-z0-9]+ )[^ :]+\/[^:]*:/ || line ~ /^\*OpenGroup: .*\//)
            translate(line, name_of(line))
    }
}
