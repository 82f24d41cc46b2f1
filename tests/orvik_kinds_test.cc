// Every record kind on an Orvik profile made by QvInitOrvikProfile: list,
// put and delete do what the kind table says the database supports, and
// where it does not, the kind's own refusal is reported and no row changes.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/record_codec.h"
#include "records/record_members.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

std::vector<std::string> AllCodes() {
  std::vector<std::string> codes;
  for (const qv::KindApi* api : qv::AllKindApis()) codes.push_back(api->schema->kind->code);
  return codes;
}

class OrvikKindTest : public ::testing::TestWithParam<std::string> {
 protected:
  OrvikKindTest() : db_(host_.scratch().Join("shipping.orv")), api_(*qv::FindKindApi(GetParam())) {
    EXPECT_EQ(QvInitOrvikProfile(db_.c_str()), 1);
    EXPECT_EQ(qvtest::OpenProfileAt(db_, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK), 1);
    host_.Clear();
  }
  const qv::KindInfo& kind() const { return *api_.schema->kind; }

  // The rows of the kind's table (-1 when it has none).
  int Rows() {
    return static_cast<int>(
        qvtest::DatabaseNumber(db_, std::string("SELECT COUNT(*) FROM \"") + kind().code + "\""));
  }

  // Texts that name the owner ("Core" "1.0", or "US" for a language).
  qv::Texts Owner() const {
    qv::Texts owner;
    for (const char* name : api_.owner_names) {
      owner.push_back(std::string(name) == "language"  ? "US"
                      : std::string(name) == "version" ? "1.0"
                                                       : "Core");
    }
    return owner;
  }
  // Key texts: the owner's, then "K" for texts and 7 for numbers.
  qv::Texts Key() const {
    qv::Texts owner = Owner();
    qv::Texts key;
    for (size_t i = 0; i < api_.key_names.size(); ++i) {
      if (i < owner.size()) {
        key.push_back(owner[i]);
        continue;
      }
      const qv::MemberSpec* m = qv::MemberForName(*api_.schema, api_.key_names[i]);
      key.push_back(m != nullptr && m->type == qv::ValueType::kText ? "K" : "7");
    }
    return key;
  }
  void* NewKeyedRecord() const {
    void* record = qv::NewRecord(*api_.schema);
    qv::Texts key = Key();
    for (size_t i = 0; i < api_.key_names.size(); ++i) {
      const qv::MemberSpec* m = qv::MemberForName(*api_.schema, api_.key_names[i]);
      if (m == nullptr && i < api_.schema->members.size()) m = &api_.schema->members[i];
      if (m == nullptr) continue;
      if (m->type == qv::ValueType::kText) {
        snprintf(static_cast<char*>(record) + m->offset, m->size, "%s", key[i].c_str());
      } else if (m->type != qv::ValueType::kVersionQuad) {
        qv::SetUnsigned(record, m->offset, m->type, 7);
      }
    }
    // A settings entry names a registry root that its line can spell.
    if (const qv::MemberSpec* root = qv::MemberForName(*api_.schema, "Root")) {
      if (strcmp(root->name, "Root") == 0) {
        qv::SetUnsigned(record, root->offset, root->type, 0x80000001u);
      }
    }
    // A preference setting's value type is one of its own (ZQFKEY_SZ).
    if (strcmp(kind().code, "PE") == 0) {
      const qv::MemberSpec* type = qv::MemberForName(*api_.schema, "DataType");
      qv::SetUnsigned(record, type->offset, type->type, 0x80000006u);
    }
    return record;
  }

  qvtest::ScriptedHost host_;
  std::string db_;
  const qv::KindApi& api_;
};

bool Is(const std::string& code, std::initializer_list<const char*> codes) {
  for (const char* c : codes) {
    if (code == c) return true;
  }
  return false;
}

TEST_P(OrvikKindTest, ListPutAndDeleteDoWhatTheDatabaseSupports) {
  const std::string code = kind().code;
  const bool held = kind().orvik_read || kind().orvik_insert || kind().orvik_delete;
  // The association families read their rows by a query although the
  // table of kinds lists no read for the module's own associations.
  const bool reads = kind().orvik_read || Is(code, {"MOSR", "MOCR"});
  // Modules, products, installs, module groups and shipped files delete
  // their rows, which the table of kinds leaves to their families.
  const bool deletes = kind().orvik_delete || Is(code, {"MO", "PR", "DR", "MG", "SF"});

  RecordList* list = nullptr;
  bool listed = api_.list(Owner(), &list);
  qv::GenericList::Free(list);
  EXPECT_EQ(listed, reads);
  if (!held && kind().orvik_refusal != nullptr) {
    ASSERT_FALSE(host_.errors().empty());
    // The index families say so in words of their own when read.
    EXPECT_EQ(host_.errors().front(), code == "DRKSSR"    ? "DRKSSRs not found in Orvik"
                                      : code == "DRKCSSR" ? "DRKCSSRs not found in Orvik"
                                                          : kind().orvik_refusal);
  }
  EXPECT_EQ(Rows(), held ? 0 : -1);

  host_.Clear();
  void* record = NewKeyedRecord();
  bool put = api_.put(record);
  qv::FreeRecord(record);
  EXPECT_EQ(put, kind().orvik_insert) << (host_.errors().empty() ? "" : host_.errors().front());
  if (!put) {
    EXPECT_FALSE(host_.errors().empty()) << "a refused put says why";
  }
  EXPECT_EQ(Rows(), !held ? -1 : put ? 1 : 0);

  host_.Clear();
  bool removed = api_.remove(Key());
  EXPECT_EQ(removed, deletes && put) << (host_.errors().empty() ? "" : host_.errors().front());
  if (!removed) {
    EXPECT_FALSE(host_.errors().empty()) << "a refused delete says why";
  }
  if (!deletes && kind().orvik_no_delete != nullptr) {
    ASSERT_FALSE(host_.errors().empty());
    const std::string said = host_.errors().front();
    // The table gives the end of the family's text.
    const std::string end = kind().orvik_no_delete;
    EXPECT_TRUE(said.size() >= end.size() &&
                said.compare(said.size() - end.size(), end.size(), end) == 0)
        << said;
  }
  if (held) {
    EXPECT_EQ(Rows(), removed ? 0 : put ? 1 : 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, OrvikKindTest, ::testing::ValuesIn(AllCodes()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                           std::string name;
                           for (char c : info.param) name += isalnum(c) ? c : '_';
                           return name;
                         });

}  // namespace
