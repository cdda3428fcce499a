// zq: the data tool for a storage directory: look, check, repair, export and import.
//
// Exit status: 0 success, 1 a problem found (or a failure), 2 bad usage.
#include "commands.h"
#include "session.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <functional>

int main(int argc, char **argv) {
    using namespace zq::tool;
    CLI::App app{"zq: look into, check, repair, export and import the tables of a storage directory (DB)"};
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "Help on every command");
    std::function<int()> run;
    std::string dir, table, file;
    std::vector<std::string> tables;

    CLI::App *ls = app.add_subcommand("ls", "The catalog: databases, tables, unknown files, lost entries");
    ls->add_option("DIR", dir, "Storage directory")->required();
    ls->callback([&] { run = [&] { return runLs(dir); }; });

    CLI::App *st = app.add_subcommand("struct", "A table's fields and indexes");
    st->add_option("DIR", dir, "Storage directory")->required();
    st->add_option("TABLE", table, "Table name")->required();
    st->callback([&] { run = [&] { return runStruct(dir, table); }; });

    ShowOptions show;
    CLI::App *sh = app.add_subcommand("show", "A table's rows as an aligned text table");
    sh->add_option("DIR", dir, "Storage directory")->required();
    sh->add_option("TABLE", table, "Table name")->required();
    sh->add_option("--order", show.order, "Show the rows in the order of this index");
    sh->add_flag("--deleted", show.deleted, "Show deleted rows too, marked in the DEL column");
    sh->add_option("--limit", show.limit, "Show at most N rows")->check(CLI::NonNegativeNumber);
    sh->callback([&] { run = [&] { return runShow(dir, table, show); }; });

    CLI::App *ck = app.add_subcommand("check", "Verify the files of a storage directory; changes nothing");
    ck->add_option("DIR", dir, "Storage directory")->required();
    ck->add_option("TABLE", tables, "Tables to check (default: every database)");
    ck->callback([&] { run = [&] { return runCheck(dir, tables); }; });

    CLI::App *rp = app.add_subcommand("repair", "Back the directory up, then rebuild what check finds broken");
    rp->add_option("DIR", dir, "Storage directory")->required();
    rp->add_option("TABLE", tables, "Tables to repair (default: every table)");
    bool pack = false;
    rp->add_flag("--pack", pack, "Drop the rows marked deleted as well, compacting each table that has any");
    rp->callback([&] { run = [&] { return runRepair(dir, tables, pack); }; });

    CLI::App *ex = app.add_subcommand("export", "Write a table to a .csv, .dbf or .xlsx file");
    ex->add_option("DIR", dir, "Storage directory")->required();
    ex->add_option("TABLE", table, "Table name")->required();
    ex->add_option("FILE", file, "Output file; its extension picks the format")->required();
    ex->callback([&] { run = [&] { return runExport(dir, table, file); }; });

    ImportOptions import;
    CLI::App *im = app.add_subcommand("import", "Replace a table's rows with those of a .csv or .dbf file");
    im->add_option("DIR", dir, "Storage directory")->required();
    im->add_option("TABLE", table, "Table name")->required();
    im->add_option("FILE", file, "Input file (.csv or .dbf)")->required();
    im->add_flag("--create", import.create, "Make the table from the file (replacing one of that name)");
    im->add_option("--struct", import.structure,
                   "With --create from CSV: the fields as NAME:TYPE[:LENGTH[:DECIMALS]],... "
                   "(types C N D L M); without it they are inferred");
    im->callback([&] { run = [&] { return runImport(dir, table, file, import); }; });

    bool known = false;
    for (const CLI::App *sub : app.get_subcommands([](CLI::App *) { return true; }))
        known = known || (argc > 1 && sub->get_name() == argv[1]);
    if (argc > 1 && argv[1][0] != '-' && !known) {
        complain(std::string("unknown command \"") + argv[1] + "\"; zq --help lists the commands");
        return kExitUsage;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp &e) {
        return app.exit(e);
    } catch (const CLI::ParseError &e) {
        app.exit(e);
        return kExitUsage;
    }
    return run ? run() : kExitUsage;
}
