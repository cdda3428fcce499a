// The subcommands of zq; each returns the process's exit status (session.h).
#pragma once

#include <string>
#include <vector>

namespace zq::tool {

int runLs(const std::string &dir);
int runStruct(const std::string &dir, const std::string &table);

struct ShowOptions {
    std::string order;    // index name, empty for natural order
    bool deleted = false; // deleted rows too, marked
    long long limit = -1; // rows at most, -1 for all
};
int runShow(const std::string &dir, const std::string &table, const ShowOptions &options);

int runCheck(const std::string &dir, const std::vector<std::string> &tables);
// pack: the tables' rows marked deleted are dropped too, by compacting their databases.
int runRepair(const std::string &dir, const std::vector<std::string> &tables, bool pack);

int runExport(const std::string &dir, const std::string &table, const std::string &file);

struct ImportOptions {
    bool create = false;   // make the table (replacing one of that name) from the file
    std::string structure; // NAME:TYPE[:LENGTH[:DECIMALS]],... for --create from CSV
};
int runImport(const std::string &dir, const std::string &table, const std::string &file, const ImportOptions &options);

} // namespace zq::tool
