#include "systeminfo/mac/platform/machine.h"

#include <mutex>
#include <utility>

namespace norvex {

Machine::~Machine() = default;

const MachineFaults& Machine::faults() const
{
    static const MachineFaults none;
    return none;
}

namespace {

std::mutex machineMutex;

std::shared_ptr<const Machine>& chosenMachine()
{
    static std::shared_ptr<const Machine> machine;
    return machine;
}

} // namespace

std::shared_ptr<const Machine> currentMachine()
{
    {
        const std::lock_guard<std::mutex> lock(machineMutex);
        if (chosenMachine() != nullptr) {
            return chosenMachine();
        }
    }
    return liveMachine();
}

void setMachine(std::shared_ptr<const Machine> machine)
{
    const std::lock_guard<std::mutex> lock(machineMutex);
    chosenMachine().swap(machine);
}

} // namespace norvex
