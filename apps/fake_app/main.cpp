// fake_app: a stand-in application for the installer's tests.
//
//   fake_app <ms>   holds a window of class "OO_Window32" for ms milliseconds, then ends
//   fake_app        (as the installer restarts it) writes its process id into
//                   "relaunched.txt" in the program directory and ends
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/process.h"
#include "platform/processes.h"
#include "platform/windows.h"

int main(int argc, char **argv) {
    using namespace zq::platform;
    if (argc > 1) {
        Window window = createWindow("OO_Window32", "fake_app");
        if (!window)
            return 2;
        serveWindows(static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10)));
        return 0;
    }
    std::string marker = programDirectory() + directorySeparator() + "relaunched.txt";
    std::FILE *out = std::fopen(marker.c_str(), "w");
    if (!out)
        return 3;
    std::fprintf(out, "%lu\n", static_cast<unsigned long>(currentProcessId()));
    std::fclose(out);
    return 0;
}
