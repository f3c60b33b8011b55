# jq --null-input --raw-input --raw-output --slurpfile tables TABLES --from-file events.jq LOG
# The table of all events by jq. TABLES is what dump_tables writes.

def field($width): . + " " * ($width - length);

def describe($tables):
  . as $event
  | $tables.descriptions[.id | tostring]
  | if . == null then "Unknown"
    else
      [.slots[]
       | $event.vars[.key] as $text
       | if .reasons then .reasons[$text] // "Failed to retrieve description" else $text end] as $texts
      | (.text | split("%s")) as $parts
      | reduce range($texts | length) as $i ($parts[0]; . + $texts[$i] + $parts[$i + 1])
      | split("\n") | join("\n" + " " * 50)
    end;

$tables[0] as $tables
| [inputs | fromjson? | select(has("id"))]
| "Last \(length) events from \(.[0].time) to \(.[-1].time):\n",
  ("Timestamp" | field(20)) + ("Event" | field(30)) + "Detail",
  "=" * 80,
  (.[]
   | (.time | field(20))
     + "\u001b[1;34m"
     + ($tables.names[.id | tostring] // "UNRECOGNIZED_EVENT_CODE_\(.id)" | field(30))
     + "\u001b[0m" + describe($tables) + "\n"),
  ""
