#pragma once

#include <string>
#include <vector>

/// @file
/// The frameworks' classes and functions that GNUstep's Foundation lacks, for applicationServicesMac.mm. They answer
/// as the script says and write down what they were asked. Every object that they hand out is new and autoreleased.

namespace standIns {

struct Script
{
    std::string raising; ///< the call that raises an exception, after it has made an object
    std::string nothing; ///< the call that answers nil, NO or an error
    bool hasActivities = true;
    std::int32_t otherProcess = 42;      ///< the other instance of the application; 0: there is none
    void* failedAuthorization = nullptr; ///< what a failing AuthorizationCreate leaves
    std::vector<std::string> calls;      ///< the calls and their arguments
};

Script& script();

/// All Objective-C objects that live in the process.
long liveObjects();
int liveActivities();
int liveAuthorizations();

/// A pool of the caller's.
class Pool
{
public:
    Pool();
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool();

private:
    void* pool_;
};

} // namespace standIns
