// stage-update: the command-line tool that prepares an update for Tessarin to install.
#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/process.h"
#include "zelqa.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr int kUsageError = 2;
constexpr int kStorageFailed = 3;

const char kUsage[] =
    "usage: stage-update --app DIR add NEW_FILE TARGET VERSION\n"
    "       stage-update --app DIR list\n"
    "       stage-update --app DIR cancel\n"
    "       stage-update --help | --version\n"
    "\n"
    "Prepares an update of the application installed in DIR. 'add' copies NEW_FILE beside\n"
    "TARGET (a file inside DIR, given relative to DIR or absolute) under TARGET's name plus\n"
    "'~', checks the copy against NEW_FILE, and records it, with VERSION, in the install\n"
    "database DIR/DB/ZELQAINST.tLog. When the application ends through SHUTDOWN,\n"
    "Tessarin.exe in DIR moves every staged file into place, keeping the replaced file as\n"
    "_NAME, and starts the application again. Staging a target again replaces the earlier\n"
    "staging; a refused or failed staging leaves the earlier one as it was. TARGET may not\n"
    "be a directory, DIR itself or outside DIR, and neither TARGET nor VERSION may hold a\n"
    "control character.\n"
    "'list' prints one line per staged file: staged path, a tab, version.\n"
    "'cancel' removes every staged file and the install database.\n"
    "\n"
    "Exit status: 0 done, 1 refused (the message says why), 2 usage, 3 storage failure\n"
    "(the earlier staging is left as it was).\n";

int usage(const char *problem) {
    std::fprintf(stderr, "stage-update: %s\n\n%s", problem, kUsage);
    return kUsageError;
}

// A runtime error in storage has shown its box; the tool still ends with a failure status.
void endWithStorageFailure() { zq::platform::exitProcess(kStorageFailed); }

int printBoxOnStderr(const char *caption, const char *text, unsigned) {
    std::fprintf(stderr, "stage-update: %s: %s\n", caption, text);
    return 1;
}

// The application directory must exist and take new files. Paths stay in the system's own
// bytes (std::filesystem would read them as UTF-8 on Windows).
bool writableDirectory(const std::string &dir) {
    zq::platform::FoundFile found;
    if (!zq::platform::findFirstFile(dir.c_str(), found) || zq::platform::fileExists(dir))
        return false;
    std::string probe = dir + zq::platform::directorySeparator() + ".stage-update-probe";
    std::FILE *file = std::fopen(probe.c_str(), "wb");
    if (!file)
        return false;
    std::fclose(file);
    zq::platform::deleteFile(probe);
    return true;
}

int report(int result) {
    if (result == ZQ_STAGE_OK)
        return 0;
    std::fprintf(stderr, "stage-update: %s\n", zq_stage_result_text(result));
    return result == ZQ_STAGE_STORAGE_FAILED ? kStorageFailed : 1;
}

void printEntry(const char *staged, const char *version, void *count) {
    std::printf("%s\t%s\n", staged, version);
    ++*static_cast<int *>(count);
}

int list() {
    int count = 0;
    zq_visit_staged(printEntry, &count); // one read of the install database, however long
    if (count == 0)
        std::fprintf(stderr, "stage-update: nothing is staged\n");
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    if (argc >= 2 && (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h"))) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (argc == 2 && !std::strcmp(argv[1], "--version")) {
        std::printf("stage-update (zelqa) %s\n", zq_version());
        return 0;
    }
    if (argc < 4 || std::strcmp(argv[1], "--app") != 0)
        return usage("expected --app DIR and a command");
    std::string app = zq::platform::fullPath(argv[2]);
    while (app.size() > 1 && (app.back() == '/' || app.back() == zq::platform::directorySeparator()))
        app.pop_back(); // a directory is looked up without its final separator
    if (!writableDirectory(app))
        return usage(("application directory missing or not writable: " + app).c_str());
    std::string command = argv[3];
    if ((command == "add" && argc != 7) || (command != "add" && argc != 4))
        return usage(("wrong arguments for " + command).c_str());
    if (command != "add" && command != "list" && command != "cancel")
        return usage(("unknown command " + command).c_str());

    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", app.c_str());
    zq_set_box_hook(printBoxOnStderr);
    __RegisterExit(endWithStorageFailure);
    __BeginGlobal();
    int status = command == "add"  ? report(zq_stage_file(argv[4], argv[5], argv[6]))
                 : command == "list" ? list()
                                     : report(zq_cancel_staged());
    __EndGlobal();
    StorageClose();
    if (status == 0 && command != "list")
        std::printf("stage-update: %s %s\n", command.c_str(), command == "add" ? "staged" : "cancelled");
    return status;
}
