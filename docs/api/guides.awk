# Doxygen's view of a guide, which is written to be read in the repository: headings get the names by
# which other guides refer to them, and links to what is not part of the documentation become text.
# A reference to a heading that does not exist is then an error of Doxygen's.

# The name of a heading as forges make it.
function slug(text) {
    text = tolower(text)
    gsub(/[^a-z0-9 _-]/, "", text)
    gsub(/ /, "-", text)
    return text
}

# The name of a guide: "docs/embedding.md" is "guide-embedding".
function page(path) {
    sub(/.*\//, "", path)
    sub(/\.md$/, "", path)
    return "guide-" tolower(path)
}

function convert(label, target,    place) {
    place = index(target, "#")
    if (target ~ /^[a-z]+:/)
        return "[" label "](" target ")"
    if (target ~ /\.md$/)
        return "[" label "](@ref " page(target) ")"
    if (place == 0)
        return label
    return "[" label "](@ref " page(place > 1 ? substr(target, 1, place - 1) : FILENAME) \
        "-" substr(target, place + 1) ")"
}

# Pictures lie beside the pages.
function convert_pictures(line,    result, picture, file) {
    result = ""
    while (match(line, /!\[[^]]*\]\([^)]*\)/)) {
        picture = substr(line, RSTART + 2, RLENGTH - 3)
        file = picture
        sub(/.*[(\/]/, "", file)
        sub(/\].*/, "", picture)
        result = result substr(line, 1, RSTART - 1) "<img src=\"" file "\" alt=\"" picture "\">"
        line = substr(line, RSTART + RLENGTH)
    }
    return result line
}

function convert_links(line,    result, link, bracket) {
    result = ""
    while (match(line, /\[[^]]*\]\([^)]*\)/)) {
        link = substr(line, RSTART + 1, RLENGTH - 2)
        bracket = index(link, "](")
        result = result substr(line, 1, RSTART - 1) \
            convert(substr(link, 1, bracket - 1), substr(link, bracket + 2))
        line = substr(line, RSTART + RLENGTH)
    }
    return result line
}

/^ *```/ { in_code = !in_code; print; next }
in_code || /^    / { print; next }
/^# / && FILENAME !~ /README/ { print $0 " {#" page(FILENAME) "}"; next }
/^##+ / {
    title = $0
    sub(/^#+ /, "", title)
    print $0 " {#" page(FILENAME) "-" slug(title) "}"
    next
}
# A table of pictures.
/^\|.*!\[/ { gsub(/\|/, ""); in_pictures = 1 }
in_pictures && /^[-|]+$/ { in_pictures = 0; print ""; next }
{ print convert_links(convert_pictures($0)) }
