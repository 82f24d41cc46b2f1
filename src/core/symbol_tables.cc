// The rows of every symbolic table and how each is read and written.
//
// Row order matters: a first-name writer writes the first row of a value,
// so of two names for one value the preferred one comes first, and a
// containment writer writes its names in row order.
#include <cstring>

#include "core/symbol_table.h"
#include "core/text_chars.h"

namespace qv {
namespace {

// The Win32 predefined key handles.
constexpr Symbol kRegRootKeys[] = {
    {"HKEY_CLASSES_ROOT", 0x80000000},     {"HKEY_CURRENT_USER", 0x80000001},
    {"HKEY_LOCAL_MACHINE", 0x80000002},    {"HKEY_USERS", 0x80000003},
    {"HKEY_PERFORMANCE_DATA", 0x80000004}, {"HKEY_CURRENT_CONFIG", 0x80000005},
    {"HKEY_PERFORMANCE_TEXT", 0x80000050}, {"HKEY_PERFORMANCE_NLSTEXT", 0x80000060},
};

// The Win32 registry value types. REG_DWORD comes before its alias, so 4 is
// always written "REG_DWORD".
constexpr Symbol kRegDataTypes[] = {
    {"REG_NONE", 0},
    {"REG_SZ", 1},
    {"REG_EXPAND_SZ", 2},
    {"REG_BINARY", 3},
    {"REG_DWORD", 4},
    {"REG_DWORD_LITTLE_ENDIAN", 4},
    {"REG_DWORD_BIG_ENDIAN", 5},
    {"REG_LINK", 6},
    {"REG_MULTI_SZ", 7},
    {"REG_RESOURCE_LIST", 8},
};

// The profile's own type codes of preference settings.
constexpr Symbol kPSDataTypes[] = {
    {"ZQFKEY_BINARY", 0x80000001},       {"ZQFKEY_DWORD", 0x80000002},
    {"ZQFKEY_EXPAND_SZ", 0x80000003},    {"ZQFKEY_MULTI_SZ", 0x80000004},
    {"ZQFKEY_NONE", 0x80000005},         {"ZQFKEY_SZ", 0x80000006},
    {"ZQFKEY_ZQWORDSTRING", 0x80000007}, {"ZQFKEY_LOGICAL", 0x80000008},
};

// A key is volatile when bit 1 of its options byte is set; non-volatile is
// the absence of that bit, so its row is never written.
constexpr Symbol kRegOptions[] = {
    {"REG_OPTION_NON_VOLATILE", 0x0},
    {"REG_OPTION_VOLATILE", 0x2},
};

// The Win32 access rights; KEY_READ and KEY_EXECUTE are the same bits.
constexpr Symbol kRegAccess[] = {
    {"KEY_QUERY_VALUE", 0x1},        {"KEY_SET_VALUE", 0x2}, {"KEY_CREATE_SUB_KEY", 0x4},
    {"KEY_ENUMERATE_SUB_KEYS", 0x8}, {"KEY_NOTIFY", 0x10},   {"KEY_CREATE_LINK", 0x20},
    {"KEY_READ", 0x20019},           {"KEY_WRITE", 0x20006}, {"KEY_EXECUTE", 0x20019},
    {"KEY_ALL_ACCESS", 0xF003F},
};

constexpr uint32_t kKeyRead = 0x20019;
constexpr uint32_t kKeyWrite = 0x20006;

// A mask is written with its combined names where it holds them whole, and
// with single rights only for bits no combined name covers. KEY_EXECUTE
// follows KEY_READ (or KEY_ALL_ACCESS) whenever the read bits are all set:
// both names always travel together in profile files.
constexpr SymbolWriteRule kRegAccessWriting[] = {
    {"KEY_QUERY_VALUE", 0x1, kKeyRead},
    {"KEY_SET_VALUE", 0x2, kKeyWrite},
    {"KEY_CREATE_SUB_KEY", 0x4, kKeyWrite},
    {"KEY_ENUMERATE_SUB_KEYS", 0x8, kKeyRead},
    {"KEY_NOTIFY", 0x10, kKeyRead},
    {"KEY_CREATE_LINK", 0x20},
    {"KEY_READ", kKeyRead},
    {"KEY_WRITE", kKeyWrite},
    {"KEY_ALL_ACCESS", 0xF003F, 0, true},
    {"KEY_EXECUTE", kKeyRead},
};

// The Win32 show commands; the first name of a value is the one written.
constexpr Symbol kShowCommands[] = {
    {"SW_HIDE", 0},          {"SW_SHOWNORMAL", 1}, {"SW_SHOWMINIMIZED", 2},
    {"SW_SHOWMAXIMIZED", 3}, {"SW_MAXIMIZE", 3},   {"SW_SHOWNOACTIVATE", 4},
    {"SW_SHOW", 5},          {"SW_MINIMIZE", 6},   {"SW_SHOWMINNOACTIVE", 7},
    {"SW_SHOWNA", 8},        {"SW_RESTORE", 9},    {"SW_SHOWDEFAULT", 10},
    {"SW_MAX", 10},
};

// The hot-key modifiers, then the Win32 virtual keys that have a name here
// (letters and digits have none). The writer writes every row whose bits
// the byte holds, so a key byte also names the codes contained in it; read
// back, the names OR to the same byte.
constexpr Symbol kHotKeys[] = {
    {"HOTKEYF_SHIFT", 0x01}, {"HOTKEYF_CONTROL", 0x02}, {"HOTKEYF_ALT", 0x04},
    {"HOTKEYF_EXT", 0x08},   {"VK_LBUTTON", 0x01},      {"VK_RBUTTON", 0x02},
    {"VK_CANCEL", 0x03},     {"VK_MBUTTON", 0x04},      {"VK_BACK", 0x08},
    {"VK_TAB", 0x09},        {"VK_CLEAR", 0x0C},        {"VK_RETURN", 0x0D},
    {"VK_SHIFT", 0x10},      {"VK_CONTROL", 0x11},      {"VK_MENU", 0x12},
    {"VK_PAUSE", 0x13},      {"VK_CAPITAL", 0x14},      {"VK_ESCAPE", 0x1B},
    {"VK_SPACE", 0x20},      {"VK_PRIOR", 0x21},        {"VK_NEXT", 0x22},
    {"VK_END", 0x23},        {"VK_HOME", 0x24},         {"VK_LEFT", 0x25},
    {"VK_UP", 0x26},         {"VK_RIGHT", 0x27},        {"VK_DOWN", 0x28},
    {"VK_SELECT", 0x29},     {"VK_PRINT", 0x2A},        {"VK_EXECUTE", 0x2B},
    {"VK_SNAPSHOT", 0x2C},   {"VK_INSERT", 0x2D},       {"VK_DELETE", 0x2E},
    {"VK_HELP", 0x2F},       {"VK_LWIN", 0x5B},         {"VK_RWIN", 0x5C},
    {"VK_APPS", 0x5D},       {"VK_NUMPAD0", 0x60},      {"VK_NUMPAD1", 0x61},
    {"VK_NUMPAD2", 0x62},    {"VK_NUMPAD3", 0x63},      {"VK_NUMPAD4", 0x64},
    {"VK_NUMPAD5", 0x65},    {"VK_NUMPAD6", 0x66},      {"VK_NUMPAD7", 0x67},
    {"VK_NUMPAD8", 0x68},    {"VK_NUMPAD9", 0x69},      {"VK_MULTIPLY", 0x6A},
    {"VK_ADD", 0x6B},        {"VK_SEPARATOR", 0x6C},    {"VK_SUBTRACT", 0x6D},
    {"VK_DECIMAL", 0x6E},    {"VK_DIVIDE", 0x6F},       {"VK_F1", 0x70},
    {"VK_F2", 0x71},         {"VK_F3", 0x72},           {"VK_F4", 0x73},
    {"VK_F5", 0x74},         {"VK_F6", 0x75},           {"VK_F7", 0x76},
    {"VK_F8", 0x77},         {"VK_F9", 0x78},           {"VK_F10", 0x79},
    {"VK_F11", 0x7A},        {"VK_F12", 0x7B},          {"VK_F13", 0x7C},
    {"VK_F14", 0x7D},        {"VK_F15", 0x7E},          {"VK_F16", 0x7F},
    {"VK_F17", 0x80},        {"VK_F18", 0x81},          {"VK_F19", 0x82},
    {"VK_F20", 0x83},        {"VK_F21", 0x84},          {"VK_F22", 0x85},
    {"VK_F23", 0x86},        {"VK_F24", 0x87},          {"VK_NUMLOCK", 0x90},
    {"VK_SCROLL", 0x91},     {"VK_LSHIFT", 0xA0},       {"VK_RSHIFT", 0xA1},
    {"VK_LCONTROL", 0xA2},   {"VK_RCONTROL", 0xA3},     {"VK_LMENU", 0xA4},
    {"VK_RMENU", 0xA5},
};

}  // namespace

constinit const SymbolTable kRegRootKeyTable = {
    .name = "root-keys",
    .description = "registry root keys (HKEY_*), by their predefined handles",
    .symbols = kRegRootKeys,
    .reading = SymbolReading::kOneName,
    .writing = SymbolWriting::kFirstName,
    .write_rules = {},
    .read_message = "Unsupported REG Root Key",
    .write_message = "Unsupported REG Root Key",
    .force_quotes = true,
    .shown_in_hex = true,
};

// The writer's message words it differently from the reader's on purpose.
constinit const SymbolTable kRegDataTypeTable = {
    .name = "reg-data-types",
    .description = "registry value types (REG_*)",
    .symbols = kRegDataTypes,
    .reading = SymbolReading::kOneName,
    .writing = SymbolWriting::kFirstName,
    .write_rules = {},
    .read_message = "Unsupported REG Data Type",
    .write_message = "Unsupported REG DataType Key",
    .force_quotes = true,
    .shown_in_hex = false,
};

constinit const SymbolTable kPSDataTypeTable = {
    .name = "ps-data-types",
    .description = "preference-setting types (ZQFKEY_*)",
    .symbols = kPSDataTypes,
    .reading = SymbolReading::kOneName,
    .writing = SymbolWriting::kFirstName,
    .write_rules = {},
    .read_message = "Unsupported PS Data Type",
    .write_message = "Unsupported PS Data Type",
    .force_quotes = true,
    .shown_in_hex = true,
};

constinit const SymbolTable kRegOptionTable = {
    .name = "key-options",
    .description = "registry key options (REG_OPTION_*), bits of the options byte",
    .symbols = kRegOptions,
    .reading = SymbolReading::kNamesOred,
    .writing = SymbolWriting::kContainedFields,
    .write_rules = {},
    .read_message = "Unsupported REG Option Type: %s",
    .write_message = nullptr,
    .force_quotes = false,
    .shown_in_hex = true,
};

constinit const SymbolTable kRegAccessTable = {
    .name = "access-masks",
    .description = "registry access rights (KEY_*), ORed into a mask",
    .symbols = kRegAccess,
    .reading = SymbolReading::kNamesOred,
    .writing = SymbolWriting::kContainedNames,
    .write_rules = kRegAccessWriting,
    .read_message = "Unsupported REG Access Type: %s",
    .write_message = nullptr,
    .force_quotes = false,
    .shown_in_hex = true,
};

constinit const SymbolTable kShowCommandTable = {
    .name = "show-commands",
    .description = "window show commands (SW_*)",
    .symbols = kShowCommands,
    .reading = SymbolReading::kOneName,
    .writing = SymbolWriting::kFirstName,
    .write_rules = {},
    .read_message = "Unsupported Show Command value",
    .write_message = nullptr,
    .force_quotes = false,
    .shown_in_hex = false,
};

constinit const SymbolTable kHotKeyTable = {
    .name = "hot-keys",
    .description = "hot-key modifiers (HOTKEYF_*) and virtual keys (VK_*), ORed into a byte",
    .symbols = kHotKeys,
    .reading = SymbolReading::kNamesOred,
    .writing = SymbolWriting::kContainedNames,
    .write_rules = {},
    .read_message = "Unsupported Hot Key Value: %s",
    .write_message = nullptr,
    .force_quotes = false,
    .shown_in_hex = true,
};

std::span<const SymbolTable* const> SymbolTables() {
  static const SymbolTable* const kTables[] = {
      &kRegRootKeyTable, &kRegDataTypeTable, &kPSDataTypeTable, &kRegOptionTable,
      &kRegAccessTable,  &kShowCommandTable, &kHotKeyTable,
  };
  return kTables;
}

const SymbolTable* FindSymbolTable(const char* name) {
  if (name == nullptr) return nullptr;
  for (const SymbolTable* table : SymbolTables()) {
    if (EqualsIgnoreCase(table->name, name)) return table;
  }
  return nullptr;
}

}  // namespace qv
