# mawk -f events.awk TABLES LOG
# The table of all events by awk, for compact lines. TABLES is what bench.py makes of dump_tables.

BEGIN { FS = "\t" }

# "name", code, name; "text", code, text; "slot", code, number, key, reasons or not;
# "reason", code, number, name, explanation. In TABLES "\n" is a newline.
NR == FNR {
    for (i = 2; i <= NF; ++i) gsub(/\\n/, "\n" sprintf("%50s", ""), $i)
    if ($1 == "name") names[$2] = $3
    else if ($1 == "text") {
        slots[$2] = split($3, pieces, "%s") - 1
        for (i = 0; i <= slots[$2]; ++i) parts[$2, i] = pieces[i + 1]
    }
    else if ($1 == "slot") { keys[$2, $3] = "\"" $4 "\":\""; explained[$2, $3] = $5 }
    else reasons[$2, $3, $4] = $5
    next
}

match($0, /\{"id":[0-9]+[,}]/) {
    code = substr($0, RSTART + 6, RLENGTH - 7)
    time = ""
    if (match($0, /"time":"[^"]*"/)) time = substr($0, RSTART + 8, RLENGTH - 9)
    detail = code in slots ? parts[code, 0] : "Unknown"
    for (i = 1; i <= slots[code]; ++i) {
        text = ""
        if (at = index($0, keys[code, i])) {
            text = substr($0, at + length(keys[code, i]))
            text = substr(text, 1, index(text, "\"") - 1)
        }
        if (explained[code, i]) {
            text = (code, i, text) in reasons ? reasons[code, i, text] \
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
