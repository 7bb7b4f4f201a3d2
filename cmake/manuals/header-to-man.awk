# The public header as a manual page, section 3: its comments are the text, its prototypes the entries.
#   awk -v version=2.0.0 -f header-to-man.awk ZQDeviceAPI.h
function roff(line) {
    gsub(/\\/, "\\e", line)
    gsub(/-/, "\\-", line)
    sub(/^[.']/, "\\\\\\&&", line)
    return line
}
function close_code() {
    if (is_code) print ".fi"
    is_code = 0
}
function print_comment(    i, line) {
    for (i = 1; i <= nof_lines; i++) {
        line = comment[i]
        if (line ~ /^    /) {
            if (!is_code) print ".PP\n.nf"
            is_code = 1
            print roff(line)
            continue
        }
        close_code()
        if (line ~ /^$/) print ".PP"
        else if (line ~ /^- /) print ".IP \\(bu 2\n" roff(substr(line, 3))
        else print roff(substr(line, match(line, /[^ ]/)))
    }
    close_code()
    nof_lines = 0
}
function flush() {
    if (prototypes != "") print ".PP\n.nf\n" prototypes ".fi\n.RS"
    else if (nof_lines) print ".PP"
    print_comment()
    if (prototypes != "") print ".RE"
    prototypes = ""
}
function take(text) {
    is_comment = text !~ /\*\/$/
    sub(/ *\*\/$/, "", text)
    sub(/^ \* ?/, "", text)
    if (is_comment || text != "") comment[++nof_lines] = text
}
NR == 1 {
    sub(/^\/\* /, "")
    name = substr($0, 1, index($0, ":") - 1)
    print ".TH " toupper(name) " 3 \"\" \"" name " " version "\"\n.ad l"
    sub(/\.$/, "")
    print ".SH NAME\n" name " \\- " roff(substr($0, index($0, ":") + 2))
    print ".SH SYNOPSIS\n.B #include <ZQAPI/" name ".h>\n.PP\nLink with \\fI\\-l" name "\\fR.\n.SH DESCRIPTION"
    is_comment = 1
    next
}
is_comment { take($0); next }
/^\/\* -+ .* -+ \*\/$/ {
    flush()
    gsub(/^\/\* -+ | -+ \*\/$/, "")
    print (is_begun++ ? "" : ".SH FUNCTIONS\n") ".SS " roff(toupper(substr($0, 1, 1)) substr($0, 2))
    next
}
/^typedef struct/, /^}/ {
    if (/^typedef/) { flush(); print ".SH RECORD\n.nf" }
    print roff($0)
    if (/^}/) print ".fi"
    next
}
# Before the functions there are tables for the compiler.
/^\/\*/ { flush(); sub(/^\/\* /, ""); take($0); if (!is_begun && !is_comment) nof_lines = 0; next }
/^ZQDEV_API/, /;$/ { sub(/^ZQDEV_API /, ""); prototypes = prototypes "\\fB" roff($0) "\\fR\n"; next }
/^$/ { if (is_begun || !is_front_done) flush(); is_front_done = 1 }
/^#/ && !is_begun { if (is_front_done) nof_lines = 0; else flush(); is_front_done = 1 }
END {
    flush()
    print ".SH RETURN VALUE\nZQ_OK (1), or a negative number of ZQErrors.h; ZQErrorText.h has name and text of each."
    print ".SH SEE ALSO\n.BR zqdev (1)"
}
