// The data tool's fixture: sample tables made through the runtime, zq run as a process.
#include "zq/support/zq_fixture.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <cstdlib>
#include <sys/wait.h>

namespace zq::tool_test {

using table_test::num;
using table_test::text;

namespace {

std::string shellQuoted(const std::string &arg) {
    std::string q = "'";
    for (char c : arg)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

std::string valueText(pObj v) {
    if (v && v->type == TYPE_CHAR)
        return v->payload.c ? v->payload.c : "";
    if (v && v->type == TYPE_LOGICAL)
        return v->payload.l ? "T" : "F";
    char out[64];
    std::snprintf(out, sizeof out, "%.4f", table_test::numberOf(v));
    return out;
}

void setRow(double code, const char *name, double balance, double day, bool active, const char *notes) {
    __DBAPPEND(nullptr);
    __SetField(nullptr, num(1), num(code));
    __SetField(nullptr, num(2), text(name));
    __SetField(nullptr, num(3), num(balance));
    __SetField(nullptr, num(4), table_test::date(day));
    __SetField(nullptr, num(5), __INIT_BOOL(active));
    __SetField(nullptr, num(6), text(notes));
    __Commit(nullptr);
}

} // namespace

void ZqTest::SetUp() { TableTest::SetUp(); }

void ZqTest::closeStorage() {
    __dbCloseAll();
    StorageClose();
}

ToolRun ZqTest::zq(const std::vector<std::string> &args) {
    closeStorage();
    std::string command = shellQuoted(std::string(ZQ_APPS_BIN_DIR) + "/zq");
    for (const std::string &a : args)
        command += " " + shellQuoted(a);
    std::string out = file("zq.out"), err = file("zq.err");
    command += " >" + shellQuoted(out) + " 2>" + shellQuoted(err) + " </dev/null";
    int raw = std::system(command.c_str());
    ToolRun run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = readFile(out);
    run.err = readFile(err);
    return run;
}

void ZqTest::makeClients() {
    createAndUse("CLIENTES", {{"CODIGO", "N", 6, 0}, {"NOME", "C", 20, 0}, {"SALDO", "N", 10, 2},
                              {"NASC", "D", 8, 0}, {"ATIVO", "L", 1, 0}, {"OBS", "M", 10, 0}});
    setRow(1, "Jos\xE9 da Silva", 1250.5, __EncodeDate(1980, 2, 29), true, "Cliente antigo.\nPaga em dia; \xE0 vista.");
    setRow(2, "Concei\xE7\xE3o", -20.25, __EncodeDate(2001, 12, 31), false, "");
    setRow(3, "", 0, 0, true, "sem nome, \"aspas\" e v\xEDrgula");
    setRow(4, "Apagado", 99, __EncodeDate(1999, 1, 1), false, "linha removida");
    __TBL_Delete(nullptr);
    __Commit(nullptr);
    setRow(5, "\xC1gata", 1e6, __EncodeDate(2026, 11, 23), true, "\xFF\xE7\xC7 fim");
    __DBCREATEINDEX(text("CLI_NOME"), text("NOME"), __INIT_NUL());
    __DBCREATEINDEX(text("CLI_COD"), text("STR(CODIGO)"), __INIT_NUL());
    closeStorage();
}

std::vector<std::string> ZqTest::rowsOf(const std::string &table) {
    use(table.c_str(), "ZQ_ROWS");
    std::vector<std::string> rows;
    int fields = int(table_test::numberOf(__TBL_Fcount(nullptr)));
    for (__TBL_GoTop(nullptr); !table_test::isTrue(__TBL_Eof(nullptr)); __TBL_Skip(nullptr, num(1))) {
        std::string row = table_test::isTrue(__TBL_Deleted(nullptr)) ? "*" : "";
        for (int i = 1; i <= fields; ++i)
            row += (i > 1 ? "|" : "") + valueText(__GetField(nullptr, num(i), __INIT_BOOL(1)));
        rows.push_back(row);
    }
    closeStorage();
    return rows;
}

std::vector<size_t> ZqTest::recordOffsets(const std::string &database) const {
    std::vector<uint8_t> bytes = fileBytes(database);
    std::vector<size_t> offsets;
    if (bytes.size() < 20)
        return offsets;
    uint32_t count = storage_test::readU32(bytes, 8);
    size_t at = 20 + storage_test::readU32(bytes, 4);
    bool fixed = bytes[1] == 'B';
    for (uint32_t i = 0; i < count && at + 8 <= bytes.size(); ++i) {
        offsets.push_back(at);
        at += 8 + (fixed ? storage_test::readU16(bytes, at) : storage_test::readU16(bytes, at + 2));
    }
    return offsets;
}

void ZqTest::patch(const std::string &database, const std::function<void(std::vector<uint8_t> &)> &change) const {
    std::vector<uint8_t> bytes = fileBytes(database);
    change(bytes);
    writeBytes(database, bytes);
}

std::vector<std::pair<std::string, std::string>> ZqTest::snapshot(const std::string &dir) const {
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto &e : std::filesystem::directory_iterator(dir))
        files.emplace_back(e.path().filename().string(), readFile(e.path().string()));
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace zq::tool_test
