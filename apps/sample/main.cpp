// A sample application written the way compiled ZELQA code calls the runtime.
//
// It opens its main window (class "OO_Window32"), notes its version in "sample.log"
// beside itself, keeps a row for every event in its table "VISITS" (made on first run) and
// logs the table's rows, unless it is only to shut down (the hand-off alone, which must
// work where storage refuses the directory), and then, as asked on its command line:
//   --update-from FILE VERSION  stages FILE as its own successor and ends through SHUTDOWN,
//                               so the installer puts FILE in place and starts it again;
//   --shutdown                  ends through SHUTDOWN with nothing staged by itself;
//   --fail                      ends in a runtime error (a number where a text belongs);
//   nothing                     ends normally.
#include "zelqa.h"

#include <cstdio>
#include <cstring>
#include <string>

#ifndef SAMPLE_VERSION
#define SAMPLE_VERSION "1.0"
#endif

namespace {

// The program's own file name, the target its successor replaces.
std::string ownFileName(const char *argv0) {
    std::string path = argv0;
    size_t cut = path.find_last_of("/\\");
    return cut == std::string::npos ? path : path.substr(cut + 1);
}

void noteVersion(const char *event) {
    std::string log = std::string(zq_program_directory()) + "sample.log";
    if (FILE *f = std::fopen(log.c_str(), "a")) {
        std::fprintf(f, "version %s %s\n", SAMPLE_VERSION, event);
        std::fclose(f);
    }
    std::printf("sample version %s %s\n", SAMPLE_VERSION, event);
}

// Appends one row to VISITS: the version and what happened.
void keepVisit(const char *event) {
    pObj area = __INIT_CHARPTR("VISITS");
    __DBAPPEND(area);
    __SetField(area, __INIT_DOUBLE(1), __INIT_CHARPTR(SAMPLE_VERSION));
    __SetField(area, __INIT_DOUBLE(2), __INIT_CHARPTR(event));
    __Commit(area);
}

// Opens VISITS (making it on the first run), adds this start and logs every row.
void openVisits() {
    pObj name = __INIT_CHARPTR("VISITS");
    if (!__File(name)->payload.l) {
        pObj version = __CreateArray(__INIT_CHARPTR("VERSION"), __INIT_CHARPTR("C"), __INIT_DOUBLE(8),
                                     __INIT_DOUBLE(0), __INIT_NUL());
        pObj event = __CreateArray(__INIT_CHARPTR("EVENT"), __INIT_CHARPTR("C"), __INIT_DOUBLE(40),
                                   __INIT_DOUBLE(0), __INIT_NUL());
        __DBCREATE(name, __CreateArray(version, event, __INIT_NUL()), nullptr);
    }
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("VISITS"), nullptr);
    keepVisit("started");
    std::string rows;
    pObj area = __INIT_CHARPTR("VISITS");
    for (__TBL_GoTop(area); !__TBL_Eof(area)->payload.l; __TBL_Skip(area, nullptr)) {
        rows += rows.empty() ? "" : ", ";
        rows += __GetField(area, __INIT_DOUBLE(1), __INIT_BOOL(1))->payload.c;
        rows += ' ';
        rows += __GetField(area, __INIT_DOUBLE(2), __INIT_BOOL(1))->payload.c;
    }
    std::string line = "table: " + rows;
    noteVersion(line.c_str());
}

} // namespace

int main(int argc, char **argv) {
    __BeginGlobal();
    zq_enter_function("MAIN", 1);
    void *window = zq_window_create("OO_Window32", "Sample " SAMPLE_VERSION);
    noteVersion("started");
    bool shutdownOnly = argc == 2 && !std::strcmp(argv[1], "--shutdown");
    if (!shutdownOnly)
        openVisits();

    if (argc == 4 && !std::strcmp(argv[1], "--update-from")) {
        zq_enter_function("MAIN", 2);
        int result = zq_stage_file(argv[2], ownFileName(argv[0]).c_str(), argv[3]);
        if (result != ZQ_STAGE_OK) {
            std::fprintf(stderr, "sample: cannot stage the update: %s\n", zq_stage_result_text(result));
            __EndGlobal();
            return 1;
        }
        keepVisit("staged");
        noteVersion("staged its successor and shuts down");
        SHUTDOWN();
    } else if (shutdownOnly) {
        SHUTDOWN();
    } else if (argc == 2 && !std::strcmp(argv[1], "--fail")) {
        zq_enter_function("MAIN", 3);
        __MsgAlert(__INIT_DOUBLE(1234.5), nullptr); // a number is not a message: the run ends here
    }
    __EndGlobal();
    zq_window_destroy(window);
    return 0;
}
