// A fixture for the data tool's tests: a storage directory filled through the runtime,
// and zq run on it as its own process, its output and exit status kept.
#pragma once

#include "support/installer_sandbox.h"
#include "support/table_fixture.h"

#include <functional>
#include <string>
#include <vector>

namespace zq::tool_test {

struct ToolRun {
    int status = -1;
    std::string out; // standard output
    std::string err; // standard error
};

class ZqTest : public table_test::TableTest {
protected:
    void SetUp() override;

    // The storage directory, "DB" in the test's own directory.
    std::string db() const { return directory + "/DB"; }
    std::string file(const std::string &name) const { return directory + "/" + name; }

    // Runs zq with these arguments (each quoted for the shell) once storage is closed.
    ToolRun zq(const std::vector<std::string> &args);

    // CLIENTES: every field type (CODIGO N 6, NOME C 20, SALDO N 10.2, NASC D, ATIVO L,
    // OBS M), five rows with Latin-1 texts, an empty text, an empty date and a memo of
    // several lines, row 4 deleted; indexes CLI_NOME (NOME) and CLI_COD (STR(CODIGO)).
    void makeClients();

    // Every row of a table through the runtime, deleted ones marked "*": the fields'
    // values as text joined by "|", in natural order.
    std::vector<std::string> rowsOf(const std::string &table);

public:
    // Offsets of the record headers of a database file in DB, in order (the records a
    // walk by capacity finds for offset-indexed files, the counted entries for indexes).
    std::vector<size_t> recordOffsets(const std::string &database) const;
    // Every file in DB with its bytes, to see that a command changed nothing.
    std::vector<std::pair<std::string, std::string>> snapshot(const std::string &dir) const;
    // The path of a file in DB, its bytes, and a change made to them in place.
    std::string inDb(const std::string &name) const { return db() + "/" + name; }
    std::vector<uint8_t> bytesOf(const std::string &database) const { return fileBytes(database); }
    void patch(const std::string &database, const std::function<void(std::vector<uint8_t> &)> &change) const;

    // Storage closed, so that zq (or a test reading bytes) sees every write and no lock.
    static void closeStorage();
};

inline bool has(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }

using test::readFile;
using test::writeFile;

} // namespace zq::tool_test
