// How samples are taken: the peers take turns, and each figure is a median.
#pragma once

#include "Peer.h"

#include <functional>
#include <map>

namespace peers {

struct Cell {
    std::vector<double> samples;
    std::string note; ///< stands in for the figure if there are no samples
};

struct Subject {
    std::string name;
    std::unique_ptr<Peer> (*make)();
    std::unique_ptr<Peer> peer;
    std::map<std::string, Cell> cells; ///< by the name of what was measured

    bool Can(Peer::Ability ability) const { return (peer->Abilities() & ability) != 0; }
};

struct Plan {
    int least;
    int most;
    double seconds; ///< for one peer, with what isn't timed
};

struct Session {
    std::vector<Subject> subjects;
    std::string folder; ///< where the files lie
    bool quick = false;

    std::string FileFor(const Workload& workload, char commentMark) const;
    std::string FileFor(const Workload& workload, const Subject& subject) const {
        return FileFor(workload, subject.peer->CommentMark());
    }

    using Willing = std::function<bool(const Subject&)>;
    using Sample = std::function<double(Subject&)>;

    /// Every round takes one sample from each willing peer, in a new order each time: a drift of the machine
    /// and what a neighbour leaves in the caches hit all alike. A sample below 0 is a failure.
    void Measure(const std::string& what, Plan plan, const Willing& willing, const Sample& sample);
};

inline bool Anyone(const Subject&) {
    return true;
}

/// In seconds, from any start.
double Now();

double Median(std::vector<double> samples);

/// Processor time so far in seconds, to tell how much of the machine was not ours.
class MachineUse {
public:
    MachineUse();
    std::string Since(const MachineUse& start) const;

private:
    double m_wall;
    double m_own = 0;
    double m_all = 0;
    double m_stolen = 0;
};

} // namespace peers
