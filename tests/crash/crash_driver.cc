// Kills the engine with SIGKILL in the middle of its writes and checks what
// is left on disk.
//
//   crash_driver [--rounds N] [--seed S] [--ads N] [--tool PATH]
//
// Each round takes one write path (puts, a complete-list put, deletes with
// their cascades, a rename, a birth from a parent, a locked close, the
// first text and the first setup message of a new language), runs it
// to the end on one copy of a generated profile to learn the files it
// makes, then runs it on a second copy in a child process and kills the
// child at a random moment. Afterwards every profile file must be byte for
// byte its old or its new version (a path that changes one file: all old or
// all new; a cascade may stop between files), and `quorvex --lock check`
// must open the profile locked and find nothing to say; that locked open
// must also have removed every hidden file a killed write left.
//
// The same program is the child: crash_driver child PATH OPERATION ROUND.

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "quorvex/quorvex.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Files = std::map<std::string, std::string>;

// ---------------------------------------------------------------- the child

// The write paths that make a language's file answer the question whether
// to make it; every other question is answered No.
bool yes_to_questions = false;

int PrintingBox(void*, const char* text, const char*, int kind) {
  fprintf(stderr, "%s\n", text);
  return kind == QV_BOX_QUESTION ? (yes_to_questions ? 1 : 0) : 1;
}

void Copy(char* to, size_t size, const std::string& text) {
  snprintf(to, size, "%s", text.c_str());
}

int PutAd(int round) {
  ADRecord* ad = nullptr;
  MPNewAD(&ad);
  Copy(ad->row.text1, sizeof ad->row.text1, "Round " + std::to_string(round));
  Copy(ad->name, sizeof ad->name, "Offer of round " + std::to_string(round));
  int result = MPPutAD(ad);
  MPFreeAD(ad);
  return result;
}

int PutAdList(int round) {
  ADList* list = nullptr;
  if (MPGetADCompleteList(&list, MODE_UPDATE) != 1) return 0;
  auto* head = static_cast<ADRecord*>(list->head->record);
  Copy(head->row.text1, sizeof head->row.text1, "Changed in round " + std::to_string(round));
  auto* last = static_cast<ADRecord*>(list->tail->record);
  MPRemoveADNode(list, last);
  MPFreeAD(last);  // a removed record is the caller's
  int result = MPPutADCompleteList(list);
  MPFreeADList(list);
  return result;
}

int Birth(int round) {
  MORecord* parent = nullptr;
  if (MPGetMO("Text Editor", "8.0", &parent) != 1) return 0;
  MORecord* child = nullptr;
  MPNewMO(&child);
  Copy(child->row.Name, sizeof child->row.Name, "Clone Editor " + std::to_string(round));
  Copy(child->row.Version, sizeof child->row.Version, "2.0");
  int result = MPPutMO(&child, parent);
  MPFreeMO(&child);
  MPFreeMO(&parent);
  return result;
}

int PutTextAndClose(int round) {
  ResourceRecord* text = nullptr;
  MPNewResource(&text);
  Copy(text->LanguageCode, sizeof text->LanguageCode, "US");
  Copy(text->ResourceName, sizeof text->ResourceName, "IDS_ROUND");
  Copy(text->Text, sizeof text->Text, "Written in round " + std::to_string(round));
  int result = MPPutResource(text);
  MPFreeResource(text);
  // The resource files are written back by the locked close.
  return CloseMasterProfile() == 1 ? result : 0;
}

// A language the example profile has no files for.
constexpr char kNewLanguage[] = "FR";

// The first text of a language makes its resource file, which the locked
// close writes.
int PutTextOfNewLanguage(int round) {
  yes_to_questions = true;
  ResourceRecord* text = nullptr;
  MPNewResource(&text);
  Copy(text->LanguageCode, sizeof text->LanguageCode, kNewLanguage);
  Copy(text->ResourceName, sizeof text->ResourceName, "IDS_ROUND");
  Copy(text->Text, sizeof text->Text, "Texte du tour " + std::to_string(round));
  int result = MPPutResource(text);
  MPFreeResource(text);
  return CloseMasterProfile() == 1 ? result : 0;
}

// The first setup message of a language makes its message file.
int PutMessageOfNewLanguage(int round) {
  yes_to_questions = true;
  StringRecord message = {};
  Copy(message.LanguageCode, sizeof message.LanguageCode, kNewLanguage);
  Copy(message.MessageKey, sizeof message.MessageKey, "Welcome");
  Copy(message.MessageText, sizeof message.MessageText, "Bienvenue, tour " + std::to_string(round));
  return MPPutString(&message);
}

struct Operation {
  const char* name;
  std::function<int(int)> run;
  bool one_file;  // changes one file: all or nothing
};

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      {"put AD", PutAd, true},
      {"complete-list put AD", PutAdList, true},
      {"delete AD with its install ads", [](int) { return MPDeleteAD(1); }, false},
      {"delete MO with its references", [](int) { return MPDeleteMO("Text Editor", "8.0"); },
       false},
      {"rename FG", [](int) { return MPRenameFG("Text Editor", "8.0", "Help", 0, 0, "Manuals"); },
       true},
      {"birth of MO from a parent", Birth, false},
      {"put Resource, locked close", PutTextAndClose, false},
      {"put Resource of a new language", PutTextOfNewLanguage, true},
      {"put String of a new language", PutMessageOfNewLanguage, true},
  };
  return operations;
}

int RunChild(const std::string& path, size_t operation, int round) {
  QuorvexHost host = {nullptr, PrintingBox, nullptr, nullptr};
  QuorvexSetHost(&host);
  char in_out[QV_PATH_SIZE];
  Copy(in_out, sizeof in_out, path);
  uint32_t flags = OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK;
  if (OpenMasterProfile(in_out, &flags, "") != 1) return 2;
  int result = Operations().at(operation).run(round);
  CloseMasterProfile();
  return result == 1 ? 0 : 3;
}

// --------------------------------------------------------------- the parent

[[noreturn]] void Fail(const std::string& text) {
  fprintf(stderr, "crash_driver: %s\n", text.c_str());
  exit(1);
}

std::string ReadAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// The lock file belongs to an open, and the hidden ".name.XXXXXX" files
// are a replacement's work beside its target: neither is profile data.
bool IsProfileFile(const std::string& name) {
  std::string last = fs::path(name).filename().string();
  return last != "QUORVEX.LOK" && last[0] != '.';
}

// Generated text ids carry a prefix drawn from the clock at each open
// ("MP_GEN_0876_..."): two runs of one write differ only there.
std::string WithoutNamePrefix(std::string bytes) {
  static const std::string kGenerated = "MP_GEN_";
  for (size_t at = bytes.find(kGenerated); at != std::string::npos;
       at = bytes.find(kGenerated, at + 1)) {
    size_t digits = at + kGenerated.size();
    for (size_t i = digits; i < digits + 4 && i < bytes.size(); ++i) {
      if (bytes[i] >= '0' && bytes[i] <= '9') bytes[i] = '#';
    }
  }
  return bytes;
}

Files Snapshot(const fs::path& dir, std::vector<std::string>* leftovers = nullptr) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(dir)) {
    if (!entry.is_regular_file()) continue;
    std::string name = fs::relative(entry.path(), dir).string();
    if (!IsProfileFile(name)) {
      if (leftovers != nullptr && fs::path(name).filename() != "QUORVEX.LOK") {
        leftovers->push_back(name);
      }
      continue;
    }
    files[name] = WithoutNamePrefix(ReadAll(entry.path()));
  }
  return files;
}

// The example profile with a long Ads file.
void MakeTemplate(const fs::path& dir, int ads) {
  fs::copy(fs::path(QUORVEX_SOURCE_DIR) / "examples/profile", dir, fs::copy_options::recursive);
  fs::path file = dir / "ADS/adlist.ad";
  std::string text = ReadAll(file);
  std::string lines;
  for (int id = 100; id < 100 + ads; ++id) {
    lines += std::to_string(id) + ",1,10,\"AD" + std::to_string(id) + ".BMP\",\"Ad " +
             std::to_string(id) + "\",Y,N,Y,\"Generated offer number " + std::to_string(id) +
             "\"\r\n";
  }
  size_t notes = text.find("[Notes]");
  text.insert(notes == std::string::npos ? text.size() : notes, lines);
  std::ofstream(file, std::ios::binary) << text;
}

void FreshCopy(const fs::path& from, const fs::path& to) {
  fs::remove_all(to);
  fs::copy(from, to, fs::copy_options::recursive);
}

pid_t StartChild(const std::string& self, const fs::path& dir, size_t operation, int round) {
  pid_t pid = fork();
  if (pid < 0) Fail("fork failed");
  if (pid == 0) {
    int null = open("/dev/null", O_WRONLY);
    if (null >= 0) dup2(null, STDERR_FILENO);
    std::string op = std::to_string(operation);
    std::string number = std::to_string(round);
    execl(self.c_str(), self.c_str(), "child", dir.c_str(), op.c_str(), number.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  return pid;
}

// Runs the tool with the arguments; its exit status, with everything it
// printed in *output.
int RunTool(const std::string& tool, const std::vector<std::string>& args, std::string* output) {
  int pipe_fds[2];
  if (pipe(pipe_fds) != 0) Fail("pipe failed");
  pid_t pid = fork();
  if (pid < 0) Fail("fork failed");
  if (pid == 0) {
    dup2(pipe_fds[1], STDOUT_FILENO);
    dup2(pipe_fds[1], STDERR_FILENO);
    close(pipe_fds[0]);
    close(pipe_fds[1]);
    std::vector<char*> argv = {const_cast<char*>(tool.c_str())};
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    execv(tool.c_str(), argv.data());
    _exit(127);
  }
  close(pipe_fds[1]);
  output->clear();
  char buffer[4096];
  ssize_t n;
  while ((n = read(pipe_fds[0], buffer, sizeof buffer)) > 0) output->append(buffer, n);
  close(pipe_fds[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

struct Tally {
  int rounds = 0;
  int killed = 0;    // killed before the child finished
  int finished = 0;  // the child ended before the kill came
  int all_old = 0;
  int all_new = 0;
  int between = 0;      // a cascade stopped between files
  std::string example;  // what one stop between files left
};

int RunParent(int argc, char** argv) {
  int rounds = 100;
  unsigned seed = static_cast<unsigned>(time(nullptr));
  int ads = 20000;
  std::string tool = QUORVEX_TOOL;
  for (int i = 1; i + 1 < argc; i += 2) {
    std::string flag = argv[i];
    if (flag == "--rounds") {
      rounds = atoi(argv[i + 1]);
    } else if (flag == "--seed") {
      seed = static_cast<unsigned>(strtoul(argv[i + 1], nullptr, 10));
    } else if (flag == "--ads") {
      ads = atoi(argv[i + 1]);
    } else if (flag == "--tool") {
      tool = argv[i + 1];
    } else {
      Fail("unknown argument " + flag);
    }
  }
  std::string self = fs::read_symlink("/proc/self/exe").string();
  std::string pattern = (fs::temp_directory_path() / "qvcrash.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) Fail("cannot make a scratch folder");
  fs::path root = pattern;
  fs::create_directories(root / "tmp");
  setenv("TMPDIR", (root / "tmp").c_str(), 1);
  setenv("QUORVEX_REGISTRY", (root / "registry.reg").c_str(), 1);
  fs::path templ = root / "template";
  fs::path reference = root / "reference";
  fs::path victim = root / "victim";
  MakeTemplate(templ, ads);
  const Files old_files = Snapshot(templ);
  printf("crash_driver: seed %u, %d rounds, profile of %zu files (Ads file %zu bytes)\n", seed,
         rounds, old_files.size(), old_files.at("ADS/adlist.ad").size());

  const std::vector<Operation>& operations = Operations();
  std::vector<Files> new_files(operations.size());
  std::vector<double> seconds(operations.size());
  for (size_t op = 0; op < operations.size(); ++op) {
    FreshCopy(templ, reference);
    auto start = Clock::now();
    int status = 0;
    waitpid(StartChild(self, reference, op, 0), &status, 0);
    seconds[op] = std::chrono::duration<double>(Clock::now() - start).count();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      Fail(std::string(operations[op].name) + " fails without a kill");
    }
    new_files[op] = Snapshot(reference);
    if (new_files[op] == old_files) Fail(std::string(operations[op].name) + " changes nothing");
  }

  std::mt19937 random(seed);
  std::vector<Tally> tallies(operations.size());
  long files_checked = 0;
  int leftovers = 0;
  int left_after_open = 0;
  int checks = 0;
  std::vector<std::string> failures;
  for (int round = 0; round < rounds; ++round) {
    size_t op = static_cast<size_t>(round) % operations.size();
    Tally& tally = tallies[op];
    ++tally.rounds;
    FreshCopy(templ, victim);
    // Any moment from the start to a little after the write would end.
    std::uniform_int_distribution<long> moment(0, static_cast<long>(seconds[op] * 1.1e6));
    long delay = moment(random);
    pid_t child = StartChild(self, victim, op, 0);
    std::this_thread::sleep_for(std::chrono::microseconds(delay));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) {
      ++tally.killed;
    } else {
      ++tally.finished;
    }

    const Files& made = new_files[op];
    std::vector<std::string> left;
    Files now = Snapshot(victim, &left);
    leftovers += static_cast<int>(left.size());
    std::set<std::string> names;
    for (const auto& [name, bytes] : old_files) names.insert(name);
    for (const auto& [name, bytes] : made) names.insert(name);
    for (const auto& [name, bytes] : now) names.insert(name);
    int olds = 0;
    int news = 0;
    std::string changed;
    std::string unchanged;
    std::string where = "round " + std::to_string(round) + " (" + operations[op].name + ", " +
                        std::to_string(delay) + " us): ";
    for (const std::string& name : names) {
      ++files_checked;
      auto version = [&](const Files& files) {
        auto found = files.find(name);
        return found == files.end() ? std::string(1, '\0') + "absent" : found->second;
      };
      std::string left = version(now);
      bool is_old = left == version(old_files);
      bool is_new = left == version(made);
      if (!is_old && !is_new) failures.push_back(where + name + " is neither old nor new");
      if (is_old && !is_new) {
        ++olds;
        unchanged += " " + name;
      }
      if (is_new && !is_old) {
        ++news;
        changed += " " + name;
      }
    }
    if (news == 0) {
      ++tally.all_old;
    } else if (olds == 0) {
      ++tally.all_new;
    } else {
      ++tally.between;
      if (tally.example.empty()) tally.example = "new:" + changed + "; still old:" + unchanged;
      if (operations[op].one_file) failures.push_back(where + "some files changed, not all");
    }

    std::string output;
    ++checks;
    int code = RunTool(tool, {"-p", victim.string(), "--lock", "--no-vcs", "check"}, &output);
    if (code != 0 || !output.empty()) {
      failures.push_back(where + "quorvex --lock check says (" + std::to_string(code) +
                         "): " + output);
    }
    std::vector<std::string> remaining;
    Snapshot(victim, &remaining);
    for (const std::string& name : remaining) {
      failures.push_back(where + name + " is still there after the locked open");
    }
    left_after_open += static_cast<int>(remaining.size());
  }

  long kills = 0;
  for (size_t op = 0; op < operations.size(); ++op) {
    const Tally& t = tallies[op];
    kills += t.killed;
    printf(
        "  %-31s %4d rounds: %4d killed, %4d finished first; all old %4d, all new %4d, "
        "stopped between files %4d (%.0f ms a run)\n",
        operations[op].name, t.rounds, t.killed, t.finished, t.all_old, t.all_new, t.between,
        seconds[op] * 1000);
    if (!t.example.empty()) printf("    a stop between files left %s\n", t.example.c_str());
  }
  printf(
      "crash_driver: %d rounds, %ld kills, %ld files checked, %d locked opens with check, "
      "%d replacement leftovers, %d left after the locked open, %zu failures\n",
      rounds, kills, files_checked, checks, leftovers, left_after_open, failures.size());
  for (size_t i = 0; i < failures.size() && i < 30; ++i) printf("  FAIL %s\n", failures[i].c_str());
  if (failures.empty()) {
    fs::remove_all(root);
  } else {
    printf("crash_driver: profiles kept in %s\n", root.c_str());
  }
  return failures.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && strcmp(argv[1], "child") == 0) {
    return RunChild(argv[2], static_cast<size_t>(atoi(argv[3])), atoi(argv[4]));
  }
  return RunParent(argc, argv);
}
