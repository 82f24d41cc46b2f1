// The registry kept in a REGEDIT4 text file.
//
// The file is small and read whole. Reads need no lock because every update
// replaces the file by a rename; updates hold an exclusive lock on a
// companion file for the whole read-change-replace, so that concurrent
// writers queue instead of losing each other's values. Lines that this code
// does not understand (other hives, other value types, comments) are kept as
// they were, in their place.

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/fs.h"
#include "platform/registry.h"

namespace qv {

namespace {

constexpr char kHeader[] = "REGEDIT4";
constexpr char kHive[] = "HKEY_LOCAL_MACHINE\\";

struct Entry {
  std::string name;  // empty for a line that holds no value (a comment)
  bool has_name = false;
  std::string raw;  // the line(s) as written, without the final line feed
};

struct Key {
  std::string path;  // the text between the brackets
  std::vector<Entry> entries;
};

struct Document {
  std::string header = kHeader;
  std::vector<std::string> preamble;  // lines before the first key
  std::vector<Key> keys;
};

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualNoCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

// "SOFTWARE\A\" and "\SOFTWARE\A" name the same key as "SOFTWARE\A".
std::string KeyPath(const std::string& key) {
  size_t begin = 0;
  size_t end = key.size();
  while (begin < end && key[begin] == '\\') ++begin;
  while (end > begin && key[end - 1] == '\\') --end;
  return kHive + key.substr(begin, end - begin);
}

std::string Escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '\\':
        out += "\\\\";
        break;
      case '"':
        out += "\\\"";
        break;
      // A line break would end the value; keep it as an escape instead.
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        out += c;
    }
  }
  return out;
}

// Reads a quoted text starting at text[*i] (the opening quote); false when
// it is not closed.
bool ReadQuoted(const std::string& text, size_t* i, std::string* out) {
  if (*i >= text.size() || text[*i] != '"') return false;
  out->clear();
  for (size_t j = *i + 1; j < text.size(); ++j) {
    char c = text[j];
    if (c == '"') {
      *i = j + 1;
      return true;
    }
    if (c == '\\' && j + 1 < text.size()) {
      char next = text[++j];
      if (next == 'n') {
        *out += '\n';
      } else if (next == 'r') {
        *out += '\r';
      } else {
        *out += next;
      }
    } else {
      *out += c;
    }
  }
  return false;
}

// The name of a value line ("Name"=... or @=...), or false for other lines.
bool ValueName(const std::string& line, std::string* name) {
  if (line.size() >= 2 && line[0] == '@' && line[1] == '=') {
    name->clear();
    return true;
  }
  size_t i = 0;
  return ReadQuoted(line, &i, name) && i < line.size() && line[i] == '=';
}

// The data part of a value line, after "=".
std::string ValueData(const std::string& raw) {
  size_t i = 0;
  std::string name;
  if (!raw.empty() && raw[0] == '@') {
    i = 1;
  } else if (!ReadQuoted(raw, &i, &name)) {
    return std::string();
  }
  return i < raw.size() ? raw.substr(i + 1) : std::string();
}

std::string FormatValue(const RegistryValue& value) {
  // The unnamed value is the key's default, written "@".
  std::string line = value.name.empty() ? "@=" : "\"" + Escape(value.name) + "\"=";
  if (value.is_dword) {
    char hex[16];
    snprintf(hex, sizeof(hex), "dword:%08x", value.dword);
    line += hex;
  } else {
    line += "\"" + Escape(value.text) + "\"";
  }
  return line;
}

Document Parse(const std::string& content) {
  Document doc;
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < content.size()) {
    size_t end = content.find('\n', start);
    if (end == std::string::npos) end = content.size();
    std::string line = content.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    start = end + 1;
  }
  size_t i = 0;
  if (!lines.empty() && !lines[0].empty() && lines[0][0] != '[') {
    doc.header = lines[0];
    i = 1;
  }
  Key* current = nullptr;
  for (; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    if (line.empty()) continue;  // blank lines are rewritten between keys
    if (line[0] == '[') {
      size_t close = line.rfind(']');
      std::string path = line.substr(1, close == std::string::npos ? std::string::npos : close - 1);
      doc.keys.push_back(Key{path, {}});
      current = &doc.keys.back();
      continue;
    }
    Entry entry;
    entry.raw = line;
    // Binary data runs on over lines that end in a backslash.
    while (!entry.raw.empty() && entry.raw.back() == '\\' && i + 1 < lines.size() &&
           !lines[i + 1].empty()) {
      entry.raw += "\n" + lines[++i];
    }
    entry.has_name = ValueName(line, &entry.name);
    if (current == nullptr) {
      doc.preamble.push_back(entry.raw);
    } else {
      current->entries.push_back(entry);
    }
  }
  return doc;
}

std::string Serialize(const Document& doc) {
  std::string out = doc.header + "\n\n";
  for (const std::string& line : doc.preamble) out += line + "\n";
  if (!doc.preamble.empty()) out += "\n";
  for (const Key& key : doc.keys) {
    out += "[" + key.path + "]\n";
    for (const Entry& entry : key.entries) out += entry.raw + "\n";
    out += "\n";
  }
  return out;
}

bool ReadWholeFile(const std::string& path, std::string* content, bool* missing) {
  content->clear();
  *missing = false;
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    *missing = errno == ENOENT || errno == ENOTDIR;
    return *missing;
  }
  char block[16384];
  for (;;) {
    ssize_t r = read(fd, block, sizeof(block));
    if (r < 0) {
      if (errno == EINTR) continue;
      close(fd);
      return false;
    }
    if (r == 0) break;
    content->append(block, static_cast<size_t>(r));
  }
  close(fd);
  return true;
}

// The registry as it is now; a missing or unreadable file reads as empty.
Document Load() {
  std::string content;
  bool missing;
  if (!ReadWholeFile(RegistryFilePath(), &content, &missing)) return Document();
  return Parse(content);
}

Key* FindKey(Document* doc, const std::string& path) {
  for (Key& key : doc->keys) {
    if (EqualNoCase(key.path, path)) return &key;
  }
  return nullptr;
}

const Entry* FindEntry(const Key& key, const std::string& name) {
  for (const Entry& entry : key.entries) {
    if (entry.has_name && EqualNoCase(entry.name, name)) return &entry;
  }
  return nullptr;
}

// A key exists when it has a section of its own or a subkey does.
bool KeyExistsIn(const Document& doc, const std::string& path) {
  std::string prefix = path + "\\";
  for (const Key& key : doc.keys) {
    if (EqualNoCase(key.path, path)) return true;
    if (key.path.size() > prefix.size() && EqualNoCase(key.path.substr(0, prefix.size()), prefix)) {
      return true;
    }
  }
  return false;
}

bool WriteAll(int fd, const std::string& data) {
  size_t done = 0;
  while (done < data.size()) {
    ssize_t w = write(fd, data.data() + done, data.size() - done);
    if (w < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    done += static_cast<size_t>(w);
  }
  return true;
}

// Writes content beside path and renames it over path.
bool ReplaceFile(const std::string& path, const std::string& content) {
  std::string temp = path + ".XXXXXX";
  int fd = mkostemp(temp.data(), O_CLOEXEC);
  if (fd < 0) return false;
  struct stat st;
  mode_t mode;
  if (stat(path.c_str(), &st) == 0) {
    mode = st.st_mode & 07777;
  } else {
    mode_t mask = umask(0);
    umask(mask);
    mode = 0666 & ~mask;
  }
  bool ok = WriteAll(fd, content) && fchmod(fd, mode) == 0 && fsync(fd) == 0;
  if (close(fd) != 0) ok = false;
  if (ok && rename(temp.c_str(), path.c_str()) != 0) ok = false;
  if (!ok) unlink(temp.c_str());
  return ok;
}

// Runs change on the current registry under the update lock and writes the
// result back when change says so.
template <typename Change>
bool Update(Change change) {
  std::string path = RegistryFilePath();
  std::string drive, directory, name;
  SplitPath(path, &drive, &directory, &name);
  if (!directory.empty() && !MakeDirectories(directory)) return false;
  std::string lock_path = path + ".lock";
  int lock = open(lock_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (lock < 0) return false;
  int locked;
  do {
    locked = flock(lock, LOCK_EX);
  } while (locked != 0 && errno == EINTR);
  bool ok = false;
  if (locked == 0) {
    std::string content;
    bool missing;
    if (ReadWholeFile(path, &content, &missing)) {
      Document doc = Parse(content);
      ok = !change(&doc) || ReplaceFile(path, Serialize(doc));
    }
    flock(lock, LOCK_UN);
  }
  close(lock);
  return ok;
}

}  // namespace

std::string RegistryFilePath() {
  const char* explicit_path = getenv("QUORVEX_REGISTRY");
  if (explicit_path != nullptr && *explicit_path != '\0') return explicit_path;
  std::string config;
  const char* xdg = getenv("XDG_CONFIG_HOME");
  if (xdg != nullptr && *xdg != '\0') {
    config = xdg;
  } else {
    const char* home = getenv("HOME");
    std::string home_dir = home != nullptr ? home : "";
    if (home_dir.empty()) {
      struct passwd* pw = getpwuid(geteuid());
      if (pw != nullptr && pw->pw_dir != nullptr) home_dir = pw->pw_dir;
    }
    config = home_dir + "/.config";
  }
  return config + "/quorvex/registry.reg";
}

bool RegistryKeyExists(const std::string& key) {
  return KeyExistsIn(Load(), KeyPath(key));
}

bool RegistryCreateKey(const std::string& key) {
  std::string path = KeyPath(key);
  if (KeyExistsIn(Load(), path)) return true;
  return Update([&](Document* doc) {
    if (KeyExistsIn(*doc, path)) return false;
    doc->keys.push_back(Key{path, {}});
    return true;
  });
}

namespace {

// The data text of a value ("dword:..." or a quoted string), if the key
// holds the value.
std::optional<std::string> StoredValueData(const std::string& key, const std::string& name) {
  Document doc = Load();
  Key* found = FindKey(&doc, KeyPath(key));
  if (found == nullptr) return std::nullopt;
  const Entry* entry = FindEntry(*found, name);
  if (entry == nullptr) return std::nullopt;
  return ValueData(entry->raw);
}

}  // namespace

std::optional<std::string> RegistryGetString(const std::string& key, const std::string& name) {
  std::optional<std::string> stored = StoredValueData(key, name);
  if (!stored) return std::nullopt;
  const std::string& data = *stored;
  size_t i = 0;
  std::string text;
  if (!ReadQuoted(data, &i, &text)) return std::nullopt;
  return text;
}

std::optional<uint32_t> RegistryGetDword(const std::string& key, const std::string& name) {
  std::optional<std::string> stored = StoredValueData(key, name);
  if (!stored) return std::nullopt;
  const std::string& data = *stored;
  constexpr char kDword[] = "dword:";
  if (data.size() <= sizeof(kDword) - 1 || !EqualNoCase(data.substr(0, 6), kDword)) {
    return std::nullopt;
  }
  std::string digits = data.substr(6);
  if (digits.size() > 8) return std::nullopt;
  char* end = nullptr;
  unsigned long value = strtoul(digits.c_str(), &end, 16);
  if (end == digits.c_str() || *end != '\0' || !isxdigit(static_cast<unsigned char>(digits[0]))) {
    return std::nullopt;
  }
  return static_cast<uint32_t>(value);
}

bool RegistrySetValues(const std::string& key, const std::vector<RegistryValue>& values) {
  std::string path = KeyPath(key);
  return Update([&](Document* doc) {
    Key* target = FindKey(doc, path);
    if (target == nullptr) {
      doc->keys.push_back(Key{path, {}});
      target = &doc->keys.back();
    }
    for (const RegistryValue& value : values) {
      bool replaced = false;
      for (Entry& entry : target->entries) {
        if (entry.has_name && EqualNoCase(entry.name, value.name)) {
          // The stored spelling of the name stays, as on Windows.
          RegistryValue renamed = value;
          renamed.name = entry.name;
          entry.raw = FormatValue(renamed);
          replaced = true;
          break;
        }
      }
      if (!replaced) target->entries.push_back(Entry{value.name, true, FormatValue(value)});
    }
    return true;
  });
}

}  // namespace qv
