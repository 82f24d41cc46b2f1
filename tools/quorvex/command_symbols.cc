// quorvex symbols [TABLE]: the names that settings records use for registry
// roots, value types, access masks and the like, with their values, so that
// a script can check a name before it writes it.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "command.h"
#include "core/symbol_table.h"

namespace qvtool {
namespace {

constexpr char kFooter[] =
    "Without TABLE: the tables, one a line. With TABLE (any case): its rows\n"
    "in table order, name and value. Values that are handles, masks or bits\n"
    "print in hex (0x...), counts and codes in decimal; --json prints an\n"
    "array of {\"name\", \"value\"} with the value as a number.";

std::string ValueText(const qv::SymbolTable& table, uint32_t value) {
  char text[16];
  snprintf(text, sizeof text, table.shown_in_hex ? "0x%X" : "%u", static_cast<unsigned>(value));
  return text;
}

void PrintTables(bool json) {
  if (json) {
    nlohmann::ordered_json out = nlohmann::ordered_json::array();
    for (const qv::SymbolTable* table : qv::SymbolTables())
      out.push_back({{"name", table->name}, {"description", table->description}});
    std::cout << out.dump(2) << "\n";
    return;
  }
  for (const qv::SymbolTable* table : qv::SymbolTables()) {
    std::string name = table->name;
    std::cout << name << std::string(name.size() < 16 ? 16 - name.size() : 1, ' ')
              << table->description << "\n";
  }
}

void PrintRows(const qv::SymbolTable& table, bool json) {
  if (json) {
    nlohmann::ordered_json out = nlohmann::ordered_json::array();
    for (const qv::Symbol& symbol : table.symbols)
      out.push_back({{"name", symbol.name}, {"value", symbol.value}});
    std::cout << out.dump(2) << "\n";
    return;
  }
  size_t width = 0;
  for (const qv::Symbol& symbol : table.symbols) width = std::max(width, strlen(symbol.name));
  for (const qv::Symbol& symbol : table.symbols) {
    std::string name = symbol.name;
    std::cout << name << std::string(width + 2 - name.size(), ' ') << ValueText(table, symbol.value)
              << "\n";
  }
}

class SymbolsCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = app.add_subcommand("symbols", "the symbolic value tables and their rows");
    sub->footer(kFooter);
    sub->add_option("TABLE", table_, "a table name, as listed without TABLE");
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    if (table_.empty()) {
      PrintTables(options.json);
      return kExitOk;
    }
    const qv::SymbolTable* table = qv::FindSymbolTable(table_.c_str());
    if (table == nullptr) {
      std::string known;
      for (const qv::SymbolTable* t : qv::SymbolTables())
        known += (known.empty() ? "" : ", ") + std::string(t->name);
      PrintError("unknown table " + table_ + " (known: " + known + ")");
      return kExitUsage;
    }
    PrintRows(*table, options.json);
    return kExitOk;
  }

 private:
  std::string table_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(SymbolsCommand);

}  // namespace qvtool
