#include "Measurement.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fstream>
#include <iostream>
#include <random>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace peers {

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double Median(std::vector<double> samples) {
    std::sort(samples.begin(), samples.end());
    return (samples[samples.size() / 2] + samples[(samples.size() - 1) / 2]) / 2;
}

std::string Session::FileFor(const Workload& workload, char commentMark) const {
    return folder + '/' + workload.Label() + (commentMark == '#' ? "-hash.ini" : ".ini");
}

void Session::Measure(const std::string& what, Plan plan, const Willing& willing, const Sample& sample) {
    std::cerr << what << " ... " << std::flush;
    const MachineUse before;
    if (quick)
        plan = {1, std::min(plan.most, 7), plan.seconds / 10};
    static std::minstd_rand random(7);
    std::map<Subject*, double> spent;
    std::vector<Subject*> order;
    for (Subject& subject : subjects) {
        if (willing(subject))
            order.push_back(&subject);
    }
    for (int round = 0; round < plan.most; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (Subject* subject : order) {
            Cell& cell = subject->cells[what];
            if (!cell.note.empty() || (round >= plan.least && spent[subject] > plan.seconds))
                continue;
            const double start = Now();
            double value = -1;
            try {
                value = sample(*subject);
            } catch (const std::exception& error) {
                std::cerr << subject->name << ": " << error.what() << '\n';
            }
            spent[subject] += Now() - start;
            if (value < 0)
                cell = {{}, "failed"};
            else
                cell.samples.push_back(value);
        }
    }
    std::cerr << MachineUse().Since(before) << '\n';
}

MachineUse::MachineUse() : m_wall(Now()) {
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        ::getrusage(who, &usage);
        for (const timeval& time : {usage.ru_utime, usage.ru_stime})
            m_own += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
    enum Column { user, nice, system, idle, wait, interrupt, softInterrupt, stolen, columns };
    double ticks[columns]{};
    std::ifstream statistics("/proc/stat");
    std::string total;
    statistics >> total;
    for (double& count : ticks)
        statistics >> count;
    const double tick = 1.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
    m_all = (ticks[user] + ticks[nice] + ticks[system] + ticks[interrupt] + ticks[softInterrupt]) * tick;
    m_stolen = ticks[stolen] * tick;
}

std::string MachineUse::Since(const MachineUse& start) const {
    const double percent = (m_wall - start.m_wall) * std::thread::hardware_concurrency() / 100;
    const double others = std::max(0.0, (m_all - start.m_all) - (m_own - start.m_own));
    return "other programs " + std::to_string(std::lround(others / percent)) + " %, stolen " +
           std::to_string(std::lround((m_stolen - start.m_stolen) / percent)) + " % of the processors";
}

} // namespace peers
