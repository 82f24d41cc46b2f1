/* Symbolic values: registry roots, value types, key options, access masks,
 * show commands, hot keys and preference-setting types, between their names
 * in profile files and their values in memory.
 *
 * Registry and preference-setting records spell Win32 constants by name.
 * Names are read without regard to case and written in upper case. A
 * reader that meets a name it does not know reports it with the prefix
 * "<parse file> : Line #<n>\n"; so does a writer that meets a value without
 * a name, where it says anything at all. Writers write through WriteField
 * (writer.h); those marked "quoted" quote the field whatever the options.
 *
 * Readers marked "names" take a text of one or more names separated by
 * blanks or commas and OR each name's value into the result, which the
 * caller clears first; an empty text adds nothing and succeeds. The
 * matching writers write each name followed by one blank, so their text
 * always ends in a blank. */
#ifndef QUORVEX_SYMBOLS_H_
#define QUORVEX_SYMBOLS_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

/* Registry root keys: the Win32 predefined key handles, "HKEY_CLASSES_ROOT"
 * 0x80000000 to "HKEY_CURRENT_CONFIG" 0x80000005, "HKEY_PERFORMANCE_TEXT"
 * 0x80000050 and "HKEY_PERFORMANCE_NLSTEXT" 0x80000060. Unknown name or
 * value: "Unsupported REG Root Key". */
QV_API uint32_t ParseRegRootKey(const char* name); /* 0 for an unknown name */
/* The name into destination (32 bytes); an empty text and 0 when the value
 * has none. */
QV_API int FormatRegRootKey(uint32_t rootKey, char* destination);
/* Quoted; an unknown value writes an empty field. Always 1. */
QV_API int WriteRegRootKeyField(uint32_t rootKey, QvFile file, uint32_t options);

/* Registry value types: the reader is ParseRegDataType (text.h), whose
 * message is "Unsupported REG Data Type". The writer writes "REG_NONE" to
 * "REG_RESOURCE_LIST" for 0 to 8 (4 always as "REG_DWORD"), quoted; any
 * other code writes an empty field, reports "Unsupported REG DataType Key"
 * (the writer's own wording) and returns 0. */
QV_API int WriteRegDataTypeField(int dataType, QvFile file, uint32_t options);

/* Preference-setting types: "ZQFKEY_BINARY" 0x80000001, "ZQFKEY_DWORD",
 * "ZQFKEY_EXPAND_SZ", "ZQFKEY_MULTI_SZ", "ZQFKEY_NONE", "ZQFKEY_SZ",
 * "ZQFKEY_ZQWORDSTRING", "ZQFKEY_LOGICAL" 0x80000008. Unknown name or value:
 * "Unsupported PS Data Type"; the reader gives 0, the writer (quoted) an
 * empty field and 0. */
QV_API uint32_t ParsePSDataType(const char* name);
QV_API int WritePSDataTypeField(uint32_t dataType, QvFile file, uint32_t options);

/* Registry key options (names): "REG_OPTION_NON_VOLATILE" adds nothing,
 * "REG_OPTION_VOLATILE" sets QV_REG_OPTION_VOLATILE. Any other name:
 * "Unsupported REG Option Type: <name>" and 0. The writer writes the field
 * "REG_OPTION_VOLATILE" when that bit is set and then, in every case, one
 * empty field: a volatile key takes two fields, a non-volatile key one.
 * The options given apply to the fields as one (";IAO;" before the first,
 * FO_END_RECORD after the last). Always 1. */
#define QV_REG_OPTION_VOLATILE 0x02u
QV_API int ParseRegOption(const char* names, uint8_t* options);
QV_API int WriteRegOptionField(uint8_t options, QvFile file, uint32_t fieldOptions);

/* Registry access masks (names), the Win32 rights: "KEY_QUERY_VALUE" 0x1,
 * "KEY_SET_VALUE" 0x2, "KEY_CREATE_SUB_KEY" 0x4, "KEY_ENUMERATE_SUB_KEYS"
 * 0x8, "KEY_NOTIFY" 0x10, "KEY_CREATE_LINK" 0x20, "KEY_READ" and
 * "KEY_EXECUTE" 0x20019, "KEY_WRITE" 0x20006, "KEY_ALL_ACCESS" 0xF003F. Any
 * other name: "Unsupported REG Access Type: <name>" and 0.
 * The writer spells a mask with KEY_READ, KEY_WRITE or KEY_ALL_ACCESS where
 * it holds all of their bits, and with single rights for the rest, in the
 * order of the list above; KEY_EXECUTE follows whenever the KEY_READ bits
 * are all set, so 0x20019 is written "KEY_READ KEY_EXECUTE " and 0xF003F
 * "KEY_ALL_ACCESS KEY_EXECUTE ". Always 1. */
QV_API int ParseRegAccess(const char* names, uint32_t* access);
QV_API int WriteRegAccessField(uint32_t access, QvFile file, uint32_t options);

/* Show commands, the Win32 values: "SW_HIDE" 0, "SW_SHOWNORMAL" 1,
 * "SW_SHOWMINIMIZED" 2, "SW_SHOWMAXIMIZED" and "SW_MAXIMIZE" 3,
 * "SW_SHOWNOACTIVATE" 4, "SW_SHOW" 5, "SW_MINIMIZE" 6, "SW_SHOWMINNOACTIVE"
 * 7, "SW_SHOWNA" 8, "SW_RESTORE" 9, "SW_SHOWDEFAULT" and "SW_MAX" 10. An
 * unknown name reports "Unsupported Show Command value" and reads 0. The
 * writer writes the first name of a value and an empty field, silently, for
 * any other value. Always 1. */
QV_API int ParseShowCommand(const char* name);
QV_API int WriteShowCommandField(int showCommand, QvFile file, uint32_t options);

/* Hot keys (names), one byte: the modifiers "HOTKEYF_SHIFT" 0x1,
 * "HOTKEYF_CONTROL" 0x2, "HOTKEYF_ALT" 0x4, "HOTKEYF_EXT" 0x8, then 81
 * virtual keys with their Win32 codes, "VK_LBUTTON" 0x01 to "VK_RMENU" 0xA5
 * (letters and digits have no name). Any other name: "Unsupported Hot Key
 * Value: <name>" and 0. The writer writes every name, in that order, whose
 * code the byte holds bit for bit: 0x0D (VK_RETURN) is written "HOTKEYF_SHIFT
 * HOTKEYF_ALT HOTKEYF_EXT VK_LBUTTON VK_MBUTTON VK_BACK VK_TAB VK_CLEAR
 * VK_RETURN ", which reads back as 0x0D. Bits that no code covers (0x40
 * alone) are not written. Always 1. */
QV_API int ParseHotKey(const char* names, uint8_t* hotKey);
QV_API int WriteHotKeyField(uint8_t hotKey, QvFile file, uint32_t options);

/* Bytes as "%02X" each without separators: in mode 1 (a double word) the
 * four bytes from the fourth down to the first, so the number reads most
 * significant byte first; otherwise count bytes from the first. The
 * destination holds 2 * count + 1 bytes (9 in mode 1). Always 1. The reader
 * is ParseHexBytes (text.h). */
QV_API int FormatHexBytes(const uint8_t* bytes, uint16_t count, char* destination, int mode);

/* 1 when key is exactly "$$" and one item of the comma-separated list
 * equals name, case and blanks included (items are not trimmed); else 0. */
QV_API int ListContainsName(const char* key, const char* name, const char* list);

/* Takes the next item of a comma-separated list: 0 when *cursor is NULL;
 * otherwise copies the text up to the next comma (or the end), without its
 * leading and trailing blanks, to destination (as large as the rest of the
 * list), moves *cursor past the comma, or to NULL after the last item, and
 * returns 1. */
QV_API int NextListItem(const char** cursor, char* destination);

QV_EXTERN_C_END

#endif /* QUORVEX_SYMBOLS_H_ */
