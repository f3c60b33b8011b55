# jq -cnf events.jq --slurpfile catalog CATALOG --arg event NAME --arg word WORD --arg log LOG LOG
# What events-query -o json writes for a log of bench.py, by jq. An empty NAME or WORD selects all.
# CATALOG is what bench.py makes of the catalogue.

INDEX($catalog[]; .code) as $events |
inputs | .vars as $vars | $events[.id | tostring] as $known |
select($event == "" or $event == $known.event) |
first(($known.variables[] | select($known.reasons[.] or . == "forced_logout_reason")), "") as $key |
($known.template / "%s") as $parts |
(reduce range($parts | length - 1) as $i ($parts[0];
    $known.variables[$i] as $slot |
    . + ($known.explained[$slot] // {($vars[$slot]): $vars[$slot]})[$vars[$slot]] + $parts[$i + 1])
) as $detail |
{at: "2026-11-\(.time[4:6])T\(.time[7:])", time, code: .id, event: $known.event, $detail, $vars,
 reason: ($vars[$key] // ""), meaning: ($known.reasons[$key][$vars[$key] // ""] // ""),
 file: $log, line: input_line_number, $log} |
select($word == "" or ("\(.event)\n\(.detail)\n\(.meaning)" | test($word; "i")))
