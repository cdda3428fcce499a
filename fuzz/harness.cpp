// The fuzz targets' shared run: program directory, box hook, input parts and clean-up.
#include "harness.h"

#include "platform/files.h"
#include "platform/process.h"
#include "platform/processes.h"
#include "runtime/failure.h"
#include "storage/state.h"
#include "tables/work_areas.h"
#include "zelqa.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace zq::fuzz {
namespace {

fs::path programDir;
std::jmp_buf endOfRun;
bool running = false;
int alerts = 0;
uint64_t finishedRuns = 0, endedByError = 0;

bool verbose = false; // ZQ_FUZZ_VERBOSE=1: every box's text on stderr

int answerBox(const char *caption, const char *text, unsigned) {
    if (verbose)
        std::fprintf(stderr, "fuzz: box \"%s\": %s\n", caption, text ? text : "");
    if (running && std::strcmp(caption, "Fatal Error") == 0)
        std::longjmp(endOfRun, 1);
    ++alerts;
    return ZQ_BUTTON_OK;
}

// The files of the program directory this process holds open.
std::vector<std::string> openFiles() {
    std::error_code ec;
    std::vector<std::string> files;
    for (fs::directory_iterator it("/proc/self/fd", ec), end; !ec && it != end; it.increment(ec)) {
        std::string name = fs::read_symlink(it->path(), ec).string();
        if (name.rfind(programDir.string(), 0) == 0)
            files.push_back(name);
    }
    return files;
}

void atEnd() {
    if (finishedRuns + endedByError > 0)
        std::fprintf(stderr, "fuzz: %llu inputs ran to their end, %llu ended in a runtime error\n",
                     (unsigned long long)finishedRuns, (unsigned long long)endedByError);
    std::error_code ec;
    fs::current_path(fs::temp_directory_path(ec), ec);
    fs::remove_all(programDir, ec);
}

// Runs body between the jump target and the end of the run; kept apart so that no local
// of the caller lives across the jump.
bool runGuarded(const std::function<void()> &body) {
    if (setjmp(endOfRun) != 0) {
        running = false;
        runtime::resumeAfterRuntimeError();
        return false;
    }
    running = true;
    body();
    running = false;
    return true;
}

// Paths on the command line are made absolute before the working directory changes.
void absolutePaths(int argc, char **argv) {
    static const char *const pathFlags[] = {"-artifact_prefix=", "-exact_artifact_path=", "-dict="};
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i], flag;
        for (const char *f : pathFlags)
            if (arg.rfind(f, 0) == 0)
                flag = f;
        if (flag.empty() && arg[0] == '-')
            continue;
        std::string path = arg.substr(flag.size());
        bool directory = !path.empty() && path.back() == '/';
        std::string absolute = (flag + fs::absolute(path).lexically_normal().string());
        if (directory && absolute.back() != '/')
            absolute += '/';
        argv[i] = strdup(absolute.c_str()); // lives as long as the process
    }
}

} // namespace

void setUp(int *argc, char ***argv) {
    absolutePaths(*argc, *argv);
    std::error_code ec;
    fs::path base = fs::is_directory("/dev/shm", ec) ? fs::path("/dev/shm") : fs::temp_directory_path();
    programDir = base / ("zq-fuzz-" + std::to_string(platform::currentProcessId()));
    fs::remove_all(programDir, ec);
    fs::create_directories(programDir);
    fs::current_path(programDir); // storage's trace file "saida.txt" goes to the working directory
    platform::setEnvironment("ZELQA_PROGRAM_DIR", programDir.string().c_str());
    platform::setFlushMode(platform::FlushMode::None); // nothing here outlives the process
    const char *v = std::getenv("ZQ_FUZZ_VERBOSE");
    verbose = v && std::strcmp(v, "1") == 0;
    zq_set_box_hook(answerBox);
    std::atexit(atEnd);
}

std::vector<Bytes> splitParts(Bytes input, size_t count) {
    std::vector<Bytes> parts;
    for (size_t i = 0; i + 1 < count; ++i) {
        uint32_t length = 0;
        for (size_t b = 0; b < 4 && b < input.size(); ++b)
            length |= uint32_t(input[b]) << (8 * b);
        input = input.subspan(std::min<size_t>(4, input.size()));
        size_t take = std::min<size_t>(length, input.size());
        parts.push_back(input.first(take));
        input = input.subspan(take);
    }
    parts.push_back(input);
    return parts;
}

std::vector<uint8_t> joinParts(const std::vector<std::vector<uint8_t>> &parts) {
    std::vector<uint8_t> out;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i + 1 < parts.size())
            for (int b = 0; b < 4; ++b)
                out.push_back(uint8_t(parts[i].size() >> (8 * b)));
        out.insert(out.end(), parts[i].begin(), parts[i].end());
    }
    return out;
}

void writeStorageFile(const std::string &name, Bytes bytes) {
    fs::create_directories(programDir / "DB");
    std::ofstream out(programDir / "DB" / name, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
}

bool runInput(const std::function<void()> &body) {
    alerts = 0;
    __RetGlob(1);
    bool finished = runGuarded(body);
    ++(finished ? finishedRuns : endedByError);
    tables::abandonAreas(); // what a runtime error left open goes with the record store
    storage::abandonStorage();
    __RetGlob(1);
    std::error_code ec;
    fs::remove_all(programDir / "DB", ec);
    fs::remove(programDir / "saida.txt", ec);
    if (std::vector<std::string> files = openFiles(); !files.empty()) {
        std::fprintf(stderr, "fuzz: a file was left open by this input; open now:\n");
        for (const std::string &f : files)
            std::fprintf(stderr, "  %s\n", f.c_str());
        std::abort();
    }
    return finished;
}

int alertsShown() { return alerts; }

} // namespace zq::fuzz

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) {
    zq::fuzz::setUp(argc, argv);
    return 0;
}

// A runtime error leaves what its jump skipped unfreed, so leaks are not looked for; the
// RSS limit still catches an input that makes memory grow.
extern "C" const char *__asan_default_options() { return "detect_leaks=0:abort_on_error=1:handle_abort=1"; }
extern "C" const char *__ubsan_default_options() { return "print_stacktrace=1:halt_on_error=1"; }
