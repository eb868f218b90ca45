# Writes each code block of a Markdown file that follows a "<!-- snippet: NAME -->" line to
# OUT/NAME.snippet, with a #line directive so that compilers point into the Markdown file.
# Usage: awk -v out=DIR -f extract-snippets.awk README.md
function fail(text) {
    print FILENAME ":" FNR ": " text > "/dev/stderr"
    failed = 1
    exit 1
}
match($0, /^<!-- snippet: [A-Za-z0-9_-]+ -->$/) {
    if (name != "") fail("snippet '" name "' has no code block")
    name = $3
    if (name in seen) fail("snippet '" name "' is named twice")
    seen[name] = 1
    next
}
name != "" && !inside && /^```/ {
    inside = 1
    file = out "/" name ".snippet"
    printf "#line %d \"%s\"\n", FNR + 1, FILENAME > file
    next
}
inside && /^```/ {
    close(file)
    inside = 0
    name = ""
    next
}
inside { print > file; next }
name != "" && !/^[ \t]*$/ { fail("snippet '" name "' is not followed by a code block") }
END {
    if (!failed && inside) fail("snippet '" name "' is not closed")
}
