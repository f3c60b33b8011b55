#include "query/check.h"

#include "eventlog/lines.h"
#include "eventlog/stamp.h"
#include "eventlog/terminal.h"
#include "report/line_finding.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace eventsviewer::query {

void Check::begin()
{
    out_ += format_ == Format::Csv ? "type,kind,count,effect,text,file,line,log\r\n" : "";
}

void Check::addRow(const char* type, const std::string& kind, std::uint64_t count,
                   const std::string& effect, const std::string& text, const LinePlace& place)
{
    const std::string number = std::to_string(count);
    const std::string line = std::to_string(place.line);
    if (format_ != Format::Table) {
        appendRecord(out_, format_,
                     {{"type", type},
                      {"kind", kind},
                      {"count", number, true},
                      {"effect", effect},
                      {"text", text},
                      {"file", place.file},
                      {"line", line, true},
                      {"log", place.log}});
    } else if (place.file.empty()) {
        out_ += kind + ": " + number + '\n';
    } else {
        const bool isNote = effect.empty();
        out_ += safe(place.file) + ':' + line + ": " + (isNote ? "note: " : "") + kind;
        out_ += (isNote ? "" : ": " + effect) + (text.empty() ? "" : ": " + text);
        out_ += count > 1 ? " (" + number + " times)\n" : "\n";
    }
}

void Check::addNote(const LinePlace& place, const char* kind, const std::string& value)
{
    Noted& note = notes_[{kind, value}];
    if (note.count++ == 0) {
        note.first = place;
    }
}

void Check::addLine(const Log& log, std::uint64_t line, std::string_view text,
                    const EventRecord* event, std::string_view at)
{
    const auto [file, number] = log.placeOf(line);
    const LinePlace place = {log.path().text, file->text, number};
    constexpr std::string_view kOuter("\r\0 \t", 4);
    const std::string_view before = text.substr(0, firstBrace(text));
    const std::string_view after = text.substr(text.find_last_not_of(kOuter) + 1);
    const auto has = [](std::string_view part, char c) {
        return part.find(c) != std::string_view::npos;
    };
    const bool hasZeros = has(before, '\0') || has(after, '\0');
    std::vector<Note> notes;
    const std::optional<Finding> finding = findingOfLine(text, event, &notes);
    ++lines_;
    events_ += event != nullptr ? 1 : 0;
    if (finding) {
        ++findings_[finding->kind];
        addRow("finding", finding->kind, 1, safe(finding->effect), beginOf(text), place);
        return;
    }
    for (const Note& note : notes) {
        addNote(place, note.kind, note.value);
    }
    if (hasZeros) {
        addNote(place, "zero bytes between lines", "");
    }
    if (has(after, '\r')) {
        addNote(place, "carriage return", "");
    }
    if (event != nullptr && at.empty() && stampOf(event->time)) {
        addNote(place, "clock not set", "");
    }
}

void Check::addSummary(const char* name, const Counts& kinds)
{
    std::uint64_t all = 0;
    for (const auto& [kind, count] : kinds) {
        all += count;
    }
    addRow("summary", name, all, "", "", {});
    for (const auto& [kind, count] : kinds) {
        addRow("summary", format_ == Format::Table ? "  " + kind : kind, count, "", "", {});
    }
}

bool Check::finish()
{
    Counts notes;
    for (const auto& [note, noted] : notes_) {
        notes[note.first] += noted.count;
        addRow("note", note.first, noted.count, "", safe(note.second), noted.first);
    }
    addRow("summary", "lines", lines_, "", "", {});
    addRow("summary", "events", events_, "", "", {});
    addSummary("findings", findings_);
    addSummary("notes", notes);
    return !findings_.empty();
}

} // namespace eventsviewer::query
