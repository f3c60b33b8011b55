# mawk -f events.awk TABLES LOG
# The table of all events by awk, for compact lines. TABLES is what bench.py makes of the catalogue.

BEGIN { FS = "\t" }

# "event", code, name, text, keys of its slots; "reason", key, name, explanation. In TABLES "\n" is a
# newline. An event without a description has no text.
NR == FNR {
    for (i = 2; i <= NF; ++i) gsub(/\\n/, "\n" sprintf("%50s", ""), $i)
    if ($1 == "reason") { key = "\"" $2 "\":\""; explained[key] = 1; reasons[key, $3] = $4 }
    else {
        names[$2] = $3
        pieceCount[$2] = split($4, pieces, "%s")
        for (i = 0; i <= NF - 4; ++i) {
            parts[$2, i] = pieces[i + 1]
            keys[$2, i] = "\"" $(i + 4) "\":\""
        }
    }
    next
}

match($0, /\{"id":[0-9]+[,}]/) {
    code = substr($0, RSTART + 6, RLENGTH - 7)
    time = ""
    if (match($0, /"time":"[^"]*"/)) time = substr($0, RSTART + 8, RLENGTH - 9)
    detail = pieceCount[code] ? parts[code, 0] : "Unknown"
    for (i = 1; i < pieceCount[code]; ++i) {
        text = ""
        if (at = index($0, keys[code, i])) {
            text = substr($0, at + length(keys[code, i]))
            text = substr(text, 1, index(text, "\"") - 1)
        }
        if (keys[code, i] in explained) {
            text = (keys[code, i], text) in reasons ? reasons[keys[code, i], text] \
                                                    : "Failed to retrieve description"
        }
        detail = detail text parts[code, i]
    }
    name = code in names ? names[code] : "UNRECOGNIZED_EVENT_CODE_" code
    rows[++count] = sprintf("%-20s\033[1;34m%-30s\033[0m%s\n", time, name, detail)
    if (count == 1) first = time
    last = time
}

END {
    if (count == 0) {
        print "No events to display."
        exit
    }
    printf "Last %d events from %s to %s:\n\n", count, first, last
    printf "%-20s%-30s%s\n", "Timestamp", "Event", "Detail"
    rule = sprintf("%80s", "")
    gsub(/ /, "=", rule)
    print rule
    for (i = 1; i <= count; ++i) print rows[i]
    print ""
}
