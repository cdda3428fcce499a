// stage-update: the command-line tool that prepares an update for Tessarin to install.
#include "platform/process.h"
#include "zelqa.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr int kUsageError = 2;
constexpr int kStorageFailed = 3;

const char kUsage[] =
    "usage: stage-update --app DIR add NEW_FILE TARGET VERSION\n"
    "       stage-update --app DIR list\n"
    "       stage-update --app DIR cancel\n"
    "\n"
    "Prepares an update of the application installed in DIR. 'add' copies NEW_FILE beside\n"
    "TARGET (a path inside DIR, or absolute) under TARGET's name plus '~' and records it,\n"
    "with VERSION, in the install database DIR/DB/ZELQAINST.tLog. When the application ends\n"
    "through SHUTDOWN, Tessarin.exe in DIR moves every staged file into place, keeping the\n"
    "replaced file as _NAME, and starts the application again. Staging a target again\n"
    "replaces the earlier staging.\n"
    "'list' prints one line per staged file: staged path, a tab, version.\n"
    "'cancel' removes every staged file and the install database.\n"
    "\n"
    "Exit status: 0 done, 1 refused (the message says why), 2 usage, 3 storage failure.\n";

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

// The application directory must exist and take new files.
bool writableDirectory(const fs::path &dir) {
    std::error_code ec;
    if (!fs::is_directory(dir, ec))
        return false;
    fs::path probe = dir / ".stage-update-probe";
    bool ok = static_cast<bool>(std::ofstream(probe));
    fs::remove(probe, ec);
    return ok;
}

int report(int result) {
    if (result == ZQ_STAGE_OK)
        return 0;
    std::fprintf(stderr, "stage-update: %s\n", zq_stage_result_text(result));
    return 1;
}

int list() {
    int count = zq_staged_count();
    for (int i = 0; i < count; ++i) {
        char staged[ZQ_STAGE_MAX_TEXT + 1], version[ZQ_STAGE_MAX_TEXT + 1];
        if (zq_staged_entry(i, staged, sizeof staged, version, sizeof version) == ZQ_STAGE_OK)
            std::printf("%s\t%s\n", staged, version);
    }
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
    if (argc < 4 || std::strcmp(argv[1], "--app") != 0)
        return usage("expected --app DIR and a command");
    fs::path app = fs::absolute(argv[2]);
    if (!writableDirectory(app))
        return usage(("application directory missing or not writable: " + app.string()).c_str());
    std::string command = argv[3];
    if ((command == "add" && argc != 7) || (command != "add" && argc != 4))
        return usage(("wrong arguments for " + command).c_str());
    if (command != "add" && command != "list" && command != "cancel")
        return usage(("unknown command " + command).c_str());

    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", app.string().c_str());
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
