#include "ListCommand.h"

#include "AppTypeNames.h"
#include "JsonWriter.h"
#include "ObjectTree.h"
#include "UsageError.h"

#include "Platform/BusFolder.h"
#include "Platform/Endpoint.h"
#include "Platform/Environment.h"

#include <algorithm>
#include <cstdio>

namespace LmComTool
{

const char* const ListCommand::kUsage = "lmcom list [--json]";

const char* const ListCommand::kHelp =
    "Lists the endpoints of the bus: the title, the application type and name it belongs\n"
    "to (where the title is a known destination name), and whether a live process holds it\n"
    "(\"live\") or it was left behind by one that died (\"dead\").\n"
    "\n"
    "  --json   one JSON object per line: {\"title\", \"type\", \"name\", \"alive\"}\n";

std::vector<Arguments::Option> ListCommand::options()
{
    return {{"json", false}};
}

int ListCommand::run(const Arguments& arguments)
{
    arguments.expectPositionals(0, 0, kUsage);
    struct Row
    {
        std::string title; // as printed: quoted unless a plain word
        std::string name;  // as it is
        int type;
        bool alive;
    };
    std::vector<Row> rows;
    for (auto& endpoint : Platform::Endpoint::list())
        rows.push_back({ObjectTree::key(endpoint.name), endpoint.name.toStdString(),
                        AppTypeNames::typeOfTitle(endpoint.name), endpoint.alive});
    std::sort(rows.begin(), rows.end(),
              [](const Row& a, const Row& b)
              {
                  const unsigned ta = (unsigned)a.type, tb = (unsigned)b.type; // unknown (-1) last
                  return ta != tb ? ta < tb : a.title < b.title;
              });

    juce::String refused;
    if (rows.empty() && !Platform::BusFolder::check(refused) && refused.isNotEmpty())
        throw CommandFailure("lmcom: list: " + refused.toStdString());
    if (rows.empty())
    {
        const auto bus = Platform::Environment::busName();
        std::fprintf(stderr, "lmcom list: no endpoints on bus '%s'\n", bus.isEmpty() ? "default" : bus.toRawUTF8());
        return 0;
    }
    if (arguments.has("json"))
    {
        for (auto& row : rows)
        {
            std::string line;
            JsonWriter json(line);
            json.beginObject().key("title").value(row.name).key("type");
            if (row.type >= 0)
                json.value(row.type).key("name").value(AppTypeNames::printable(row.type));
            else
                json.null().key("name").null();
            json.key("alive").value(row.alive).endObject();
            std::printf("%s\n", line.c_str());
        }
        return 0;
    }

    size_t width = 5;
    for (auto& row : rows)
        width = std::max(width, row.title.size());
    std::printf("%-*s  %-4s  %-13s  %s\n", (int)width, "TITLE", "TYPE", "APPLICATION", "STATE");
    for (auto& row : rows)
        std::printf("%-*s  %-4s  %-13s  %s\n", (int)width, row.title.c_str(),
                    row.type >= 0 ? std::to_string(row.type).c_str() : "-",
                    row.type >= 0 ? AppTypeNames::printable(row.type).c_str() : "-", row.alive ? "live" : "dead");
    return 0;
}

} // namespace LmComTool
