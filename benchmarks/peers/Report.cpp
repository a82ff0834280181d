#include "Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sys/utsname.h>
#include <sys/vfs.h>
#include <thread>

namespace peers {
namespace {

struct Column {
    const char* name;
    const char* unit;
};

struct Table {
    const char* title;
    std::vector<Column> columns;
};

const std::vector<Table> tables = {
    {"Load",
     {{"load small", "us"},
      {"load 1k", "ms"},
      {"load 10k", "ms"},
      {"load 100k", "ms"},
      {"load 500k", "ms"},
      {"load 1x10k", "ms"},
      {"values right", ""}}},
    {"Look-up on 10k tags", {{"get hit", "ns"}, {"get miss", "ns"}, {"2 threads", "x"}, {"enumerate", "ms"}}},
    {"Set and persist one tag, or 40 at once",
     {{"save 1k", "ms"},
      {"save 100k", "ms"},
      {"save 40 of 1k", "ms"},
      {"save 40 of 100k", "ms"},
      {"new inode", ""},
      {"syncs", ""}}},
    {"Peak memory of a process that loads 100k tags", {{"RSS", "MiB"}, {"idle RSS", "MiB"}}},
};

Cell CellOf(const Subject& subject, const char* what) {
    const auto found = subject.cells.find(what);
    return found == subject.cells.end() ? Cell() : found->second;
}

void PrintCell(const Cell& cell) {
    if (cell.samples.empty()) {
        std::printf(" %13s", cell.note.empty() ? "-" : cell.note.c_str());
        return;
    }
    const double figure = Median(cell.samples);
    const bool isWhole = figure >= 100 || figure == std::floor(figure);
    std::printf(" %13.*f", isWhole ? 0 : figure >= 10 ? 1 : figure >= 1 ? 2 : 4, figure);
}

void WriteCell(const Subject& subject, const Column& column, std::ostream& out) {
    const Cell cell = CellOf(subject, column.name);
    out << R"({"peer": ")" << subject.name << R"(", "measure": ")" << column.name << R"(", "unit": ")"
        << column.unit << R"(", "note": ")" << cell.note << '"';
    if (!cell.samples.empty()) {
        const auto [low, high] = std::minmax_element(cell.samples.begin(), cell.samples.end());
        out << R"(, "median": )" << Median(cell.samples) << R"(, "min": )" << *low << R"(, "max": )" << *high
            << R"(, "samples": )" << cell.samples.size();
    }
    out << '}';
}

} // namespace

std::string DescribeMachine(const std::string& folder) {
    std::string processor;
    std::string line;
    for (std::ifstream info("/proc/cpuinfo"); std::getline(info, line);) {
        if (line.rfind("model name", 0) == 0)
            processor = line.substr(line.find(':') + 2);
    }
    utsname system{};
    ::uname(&system);
    const std::string release = std::string(system.release).substr(0, std::strcspn(system.release, "-"));
    struct statfs disk {};
    ::statfs(folder.c_str(), &disk);
    const std::string diskName = disk.f_type == 0xEF53       ? "ext4"
                                 : disk.f_type == 0x01021994 ? "tmpfs, WHICH IS NO DISK"
                                                             : "file system " + std::to_string(disk.f_type);
    return processor + ", " + std::to_string(std::thread::hardware_concurrency()) + " cores, Linux " +
           release + ", g++ " __VERSION__ ", files on " + diskName;
}

void PrintTables(const Session& session) {
    for (const auto& [title, columns] : tables) {
        std::printf("\n%-48s\n%-16s", title, "");
        for (const Column& column : columns)
            std::printf(" %13s", (std::string(column.name) + ' ' + column.unit).c_str());
        for (const Subject& subject : session.subjects) {
            std::printf("\n%-16s", subject.name.c_str());
            for (const Column& column : columns)
                PrintCell(CellOf(subject, column.name));
        }
        std::printf("\n");
    }
}

bool WriteJson(const Session& session, const std::string& file, const std::string& machine) {
    std::ofstream out(file);
    out << R"({"machine": ")" << machine << R"(", "quick": )" << (session.quick ? "true" : "false")
        << R"(, "results": [)";
    const char* comma = "\n";
    for (const Subject& subject : session.subjects) {
        for (const Table& table : tables) {
            for (const Column& column : table.columns) {
                out << comma;
                WriteCell(subject, column, out);
                comma = ",\n";
            }
        }
    }
    out << "\n]}\n";
    return !out.flush().fail();
}

} // namespace peers
