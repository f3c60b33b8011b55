#include "query/messages.h"
#include "query/options.h"
#include "query/query.h"
#include "text/shared_text.h"

#include <exception>
#include <new>

namespace {

using namespace eventsviewer::query;

constexpr const char* kHelp = R"(Usage: events-query [OPTION]... [LOG]...
Shows those events of satellite terminals' logs that match all the options.
LOG is a file L, read after L.0, a folder of logs, or - (/common/events_report).
  -e, --event PATTERN,...  name ('*switch*') or code; !PATTERN leaves it out
  -g, --grep REGEX         in the name or detail; without capitals in any case
  -S, --since TIME         'Nov 20', 'Nov 20 08:14', 08:14, -2h, 2026-11-20
  -U, --until TIME         to the end of that day, minute or second
      --year YEAR          the year of the last event; the log has no years
  -n, --number N           only the newest N of these events of each log
  -C, --context N          also the N events before and after each
  -r, --reverse            newest first
  -f, --follow             also what comes from now on; begins with the last 10
  -m, --merge              all logs in one order of time; -n counts for all
  -c, --count KEY[,KEY]    how many: by event, detail, reason, log, day or hour
      --check              say what is damaged; with -e, -S, -U and -o
      --name GLOB          the logs in a folder (default events_report)
  -o, --output FORMAT      )" EVENTS_QUERY_FORMATS R"(
      --color[=WHEN]       auto, always or never
      --progress           show how far the reading has come
      --catalog            list the known events; with -e, -g and -o json
  -h, --help               show this help
      --version            show the version
Examples:
  events-query -m -S -2h logs/                     the newest of all terminals
  events-query -e MODEM_OUT_OF_NETWORK -C 3 LOG    what came before each outage
Status: 0 something was found, 1 nothing, 2 an error. More: man events-query
)";

int show(const char* text)
{
    output() += text;
    flushOutput();
    return kFound;
}

} // namespace

int main(int argc, char** argv)
{
    std::set_new_handler(endOutOfMemory);
    eventsviewer::setTextMemoryHandler(endOutOfMemory);
    std::set_terminate(endOutOfMemory); // the JSON library throws where a string has no memory
    const Options options = parseOptions(argc, argv);
    switch (options.action) {
    case Action::ShowEvents:
    case Action::CheckLogs:
        return showEvents(options);
    case Action::ListCatalog:
        return listCatalog(options);
    case Action::ShowHelp:
        return show(kHelp);
    case Action::ShowVersion:
        return show("events-query " EVENTS_QUERY_VERSION "\n");
    }
}
