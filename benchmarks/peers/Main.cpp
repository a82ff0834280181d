#include "Report.h"
#include "Works.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

namespace peers {

std::vector<PeerEntry>& KnownPeers() {
    static std::vector<PeerEntry> peers;
    return peers;
}

namespace {

struct Options {
    bool quick = false;
    std::vector<std::string> only;
    std::string json;
    std::string folder = "peers-work";
};

bool Parse(const std::vector<std::string>& arguments, Options& options) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool hasValue = i + 1 < arguments.size();
        if (arguments[i] == "--quick")
            options.quick = true;
        else if (arguments[i] == "--only" && hasValue)
            options.only.push_back(arguments[++i]);
        else if (arguments[i] == "--json" && hasValue)
            options.json = arguments[++i];
        else if (arguments[i] == "--dir" && hasValue)
            options.folder = arguments[++i];
        else
            return false;
    }
    return true;
}

std::vector<Subject> ChoosePeers(const std::vector<std::string>& only) {
    std::vector<Subject> chosen;
    for (const PeerEntry& entry : KnownPeers()) {
        const auto isNamed = [&](const std::string& part) {
            return ::strcasestr(entry.name.c_str(), part.c_str()) != nullptr;
        };
        if (only.empty() || std::any_of(only.begin(), only.end(), isNamed))
            chosen.push_back({entry.name, entry.make, entry.make(), {}});
    }
    return chosen;
}

bool WriteFiles(const Session& session, const std::vector<const Workload*>& workloads) {
    for (const Workload* workload : workloads) {
        for (const char commentMark : {';', '#'}) {
            if (!workload->Write(session.FileFor(*workload, commentMark), commentMark))
                return false;
        }
    }
    return true;
}

int Run(const Options& options) {
    Session session{ChoosePeers(options.only), std::filesystem::absolute(options.folder), options.quick};
    if (!std::filesystem::create_directories(session.folder)) {
        std::cerr << session.folder << ": cannot be created, or already exists\n";
        return 1;
    }
    const std::vector<Workload> smalls = {{1, 2}, {1, 6}, {2, 5}, {1, 15}, {3, 6}, {2, 12}, {4, 7}, {3, 12}};
    const Workload small(50, 20);
    const Workload medium(500, 20);
    const Workload flat(1, 10'000);
    const Workload large(5'000, 20);
    const Workload larger(25'000, 20);
    std::vector<const Workload*> all = {&small, &medium, &flat, &large, &larger};
    for (const Workload& each : smalls)
        all.push_back(&each);
    if (!WriteFiles(session, all)) {
        std::cerr << "cannot write the files\n";
        return 1;
    }

    const MachineUse before;
    MeasureMemory(session, large, larger);
    LoadAndCheck(session, medium);
    MeasureLookUps(session, medium);
    MeasureSmallLoads(session, smalls, "load small");
    MeasureLoad(session, small, "load 1k");
    MeasureLoad(session, medium, "load 10k");
    MeasureLoad(session, flat, "load 1x10k");
    MeasureLoad(session, large, "load 100k");
    MeasureLoad(session, larger, "load 500k");
    MeasureSave(session, small, "save 1k");
    MeasureSave(session, large, "save 100k");
    MeasureSave(session, small, "save 40 of 1k", 40);
    MeasureSave(session, large, "save 40 of 100k", 40);
    LoadAndCheck(session, medium);
    MeasureThreads(session, medium); // last: a process that has had threads takes more locks

    const std::string machine = DescribeMachine(session.folder) + ", " + MachineUse().Since(before);
    std::printf("%s%s\n", machine.c_str(), session.quick ? ", quick run" : "");
    PrintTables(session);
    std::filesystem::remove_all(session.folder);
    return options.json.empty() || WriteJson(session, options.json, machine) ? 0 : 1;
}

} // namespace
} // namespace peers

int main(int count, char** values) {
    try {
        const std::vector<std::string> arguments(values + 1, values + count);
        if (arguments.size() >= 4 && arguments[0] == "--child")
            peers::RunChild(arguments);
        peers::Options options;
        if (!peers::Parse(arguments, options)) {
            std::cerr << "usage: corvane_peers [--quick] [--only NAME]... [--json FILE] [--dir NEW-FOLDER]\n";
            return 2;
        }
        return peers::Run(options);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
