// Starting and ending the runtime for a command, and where its boxes and errors go.
#include "session.h"

#include "platform/process.h"
#include "runtime/failure.h"
#include "storage/state.h"
#include "text.h"
#include "zelqa.h"

#include <cstdio>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace zq::tool {
namespace {

std::string copyDirectory; // the private copy to remove, or empty

void removeCopy() {
    if (copyDirectory.empty())
        return;
    std::error_code ec;
    fs::remove_all(fs::path(copyDirectory).parent_path(), ec);
    copyDirectory.clear();
}

int printBox(const char *caption, const char *text, unsigned) {
    std::string c = caption ? caption : "", t = text ? text : "";
    if (c == "Fatal Error")
        complain("runtime error: " + latin1ToUtf8(t));
    else
        complain(latin1ToUtf8(c) + ": " + latin1ToUtf8(t));
    return ZQ_BUTTON_OK;
}

// After the "Fatal Error" box: the mapped files already hold every write, so the process
// may end here; a private copy goes with it.
void endAfterError() {
    removeCopy();
    std::fflush(stdout);
    platform::exitProcess(kExitProblem);
}

} // namespace

void complain(const std::string &message) { std::fprintf(stderr, "zq: %s\n", message.c_str()); }

bool isStorageDirectory(const std::string &dir) {
    std::error_code ec;
    if (!fs::is_directory(dir, ec)) {
        complain(dir + ": no such directory");
        return false;
    }
    if (!fs::is_regular_file(fs::path(dir) / "catalog.plm", ec)) {
        complain(dir + ": not a storage directory (no catalog.plm)");
        return false;
    }
    return true;
}

void startRuntime(const std::string &dir) {
    zq_set_box_hook(printBox);
    __RegisterExit(endAfterError);
    storage::useDirectory(fs::absolute(dir).lexically_normal().string());
    __BeginGlobal();
}

void endRuntime() {
    __dbCloseAll();
    __EndGlobal();
    removeCopy();
}

std::string privateCopy(const std::string &dir, const std::vector<std::string> &databases) {
    std::error_code ec;
    fs::path base = fs::temp_directory_path(ec) / ("zq-" + std::to_string(std::rand()) + "-" +
                                                   std::to_string(fs::file_time_type::clock::now().time_since_epoch().count()));
    fs::path copy = base / "DB";
    fs::create_directories(copy, ec);
    copyDirectory = copy.string();
    for (const auto &item : fs::directory_iterator(dir, ec)) {
        std::string name = item.path().filename().string();
        bool wanted = name == "catalog.plm";
        for (const std::string &db : databases) {
            std::string u = upper(name), d = upper(db);
            if (u == d || (u.size() > d.size() && u.compare(0, d.size() + 1, d + "_") == 0))
                wanted = true;
        }
        if (wanted && item.is_regular_file())
            fs::copy_file(item.path(), copy / name, fs::copy_options::overwrite_existing, ec);
    }
    return copyDirectory;
}

} // namespace zq::tool
