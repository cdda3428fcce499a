// zq check: every problem of a storage directory's files, with its place; read-only.
#include "commands.h"

#include "check.h"
#include "session.h"

namespace zq::tool {

int runCheck(const std::string &dir, const std::vector<std::string> &tables) {
    if (!isStorageDirectory(dir))
        return kExitUsage;
    // Keys are built by the runtime's own functions, which need its context; storage is
    // never started, so nothing in the directory is opened for writing.
    startRuntime(dir);
    std::vector<Problem> problems = checkDirectory(dir, tables).problems;
    endRuntime();
    printProblems(problems);
    return faultCount(problems) == 0 ? kExitOk : kExitProblem;
}

} // namespace zq::tool
