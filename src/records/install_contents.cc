// The line formats of the kinds an install's file holds, and their C
// operations. A shipping language names its language code alone; an OS
// document language pairs an OS language code with the document language
// code, as the profile's OS document languages do.
#include "records/install_families.h"

namespace qv {
namespace {

constexpr char kNoInstallFile[] = "File associated with install %s cannot be found or opened!";

// The schema's start: the row, the install's name first, then the members.
template <class Desc>
KindSchema InstallSchema(const char* code, std::vector<MemberSpec> members,
                         std::vector<LineField> line) {
  using Record = typename Desc::Record;
  members.insert(members.begin(), QV_MEMBER(Record, row.InstallName, "InstallName", true));
  members.push_back(QV_MEMBER(Record, recordFlags, "recordFlags", false));
  members.push_back(QV_MEMBER(Record, lineNumber, "lineNumber", false));
  KindSchema s = OwnerRecordSchema<Desc>(code, std::move(members), kNoInstallFile);
  s.line = std::move(line);
  // Kinds without a flag table of their own are labelled by their section.
  s.flag_label = s.kind->section;
  return s;
}

#define TEXT(R, path, width) QV_LINE_FIELD(R, row.path, LineSyntax::kText, width, 0, 0)
#define OPTIONAL_TEXT(R, path, width) \
  QV_LINE_FIELD(R, row.path, LineSyntax::kText, width, FO_OPTIONAL, 0)
#define NUMBER(R, path) QV_LINE_FIELD(R, row.path, LineSyntax::kInteger, 0, 0, 0)
#define MEMBER(R, path) QV_MEMBER(R, row.path, #path, true)

}  // namespace

const KindSchema& DpDesc::Schema() {
  static const KindSchema s =
      InstallSchema<DpDesc>("DP", {MEMBER(DPRecord, ProductName), MEMBER(DPRecord, ProductVersion)},
                            {TEXT(DPRecord, ProductName, 40), TEXT(DPRecord, ProductVersion, 10)});
  return s;
}

const KindSchema& DslaDesc::Schema() {
  static const KindSchema s = InstallSchema<DslaDesc>("DSLA", {MEMBER(DSLARecord, LanguageCode)},
                                                      {TEXT(DSLARecord, LanguageCode, 10)});
  return s;
}

const KindSchema& IlaDesc::Schema() {
  static const KindSchema s =
      InstallSchema<IlaDesc>("ILA",
                             {MEMBER(ILARecord, LanguageCode), MEMBER(ILARecord, text1),
                              MEMBER(ILARecord, text2), MEMBER(ILARecord, text3)},
                             {TEXT(ILARecord, LanguageCode, 10), TEXT(ILARecord, text1, 40),
                              TEXT(ILARecord, text2, 40), OPTIONAL_TEXT(ILARecord, text3, 255)});
  return s;
}

const KindSchema& AmlDesc::Schema() {
  static const KindSchema s = InstallSchema<AmlDesc>(
      "AML",
      {MEMBER(AMLRecord, LanguageCode), MEMBER(AMLRecord, ModuleName),
       MEMBER(AMLRecord, ModuleVersion), MEMBER(AMLRecord, AliasLanguageCode)},
      {TEXT(AMLRecord, LanguageCode, 10), TEXT(AMLRecord, ModuleName, 40),
       TEXT(AMLRecord, ModuleVersion, 10), TEXT(AMLRecord, AliasLanguageCode, 10)});
  return s;
}

const KindSchema& DaDesc::Schema() {
  static const KindSchema s = InstallSchema<DaDesc>(
      "DA",
      {MEMBER(DARecord, AdId), MEMBER(DARecord, number1), MEMBER(DARecord, number2),
       MEMBER(DARecord, Flags), MEMBER(DARecord, text1)},
      {NUMBER(DARecord, AdId), NUMBER(DARecord, number1), NUMBER(DARecord, number2),
       QV_LINE_FIELD(DARecord, row.Flags, LineSyntax::kFlag, 0, 0, DA_FLAG),
       OPTIONAL_TEXT(DARecord, text1, 40)});
  return s;
}

const KindSchema& SmDesc::Schema() {
  static const KindSchema s =
      InstallSchema<SmDesc>("SM", {MEMBER(SMRecord, MediaNumber), MEMBER(SMRecord, MediaName)},
                            {NUMBER(SMRecord, MediaNumber), TEXT(SMRecord, MediaName, 40)});
  return s;
}

const KindSchema& ArDesc::Schema() {
  static const KindSchema s = InstallSchema<ArDesc>(
      "AR",
      {MEMBER(ARRecord, ArchiveName), MEMBER(ARRecord, number1), MEMBER(ARRecord, Path),
       MEMBER(ARRecord, number2), MEMBER(ARRecord, text1)},
      {TEXT(ARRecord, ArchiveName, 40), NUMBER(ARRecord, number1), TEXT(ARRecord, Path, 260),
       NUMBER(ARRecord, number2), TEXT(ARRecord, text1, 40)});
  return s;
}

const KindSchema& AmlaDesc::Schema() {
  static const KindSchema s = InstallSchema<AmlaDesc>(
      "AMLA",
      {MEMBER(AMLARecord, ArchiveName), MEMBER(AMLARecord, ModuleName),
       MEMBER(AMLARecord, ModuleVersion), MEMBER(AMLARecord, LanguageCode)},
      {TEXT(AMLARecord, ArchiveName, 40), TEXT(AMLARecord, ModuleName, 40),
       TEXT(AMLARecord, ModuleVersion, 10), TEXT(AMLARecord, LanguageCode, 10)});
  return s;
}

const KindSchema& DmgDesc::Schema() {
  static const KindSchema s = InstallSchema<DmgDesc>(
      "DMG",
      {MEMBER(DMGRecord, GroupName), MEMBER(DMGRecord, GroupVersion), MEMBER(DMGRecord, Flags)},
      {TEXT(DMGRecord, GroupName, 40), TEXT(DMGRecord, GroupVersion, 10),
       QV_LINE_FIELD(DMGRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0)});
  return s;
}

const KindSchema& DodlDesc::Schema() {
  static const KindSchema s = InstallSchema<DodlDesc>(
      "DODL", {MEMBER(DODLRecord, OSLanguageCode), MEMBER(DODLRecord, DocLanguageCode)},
      {TEXT(DODLRecord, OSLanguageCode, 10), TEXT(DODLRecord, DocLanguageCode, 10)});
  return s;
}

// Rows of the database only: no line is ever read or written.
const KindSchema& DmDesc::Schema() {
  static const KindSchema s = [] {
    KindSchema schema =
        InstallSchema<DmDesc>("DM", {MEMBER(DMRecord, ModuleName), MEMBER(DMRecord, ModuleVersion)},
                              {TEXT(DMRecord, ModuleName, 40), TEXT(DMRecord, ModuleVersion, 10)});
    schema.flag_label = "Install Modules";
    return schema;
  }();
  return s;
}

#undef TEXT
#undef OPTIONAL_TEXT
#undef NUMBER
#undef MEMBER

int DpDesc::Put(DPRecord* r, bool* w) {
  return DpFamily::Put(r, w);
}
int DslaDesc::Put(DSLARecord* r, bool* w) {
  return DslaFamily::Put(r, w);
}
int IlaDesc::Put(ILARecord* r, bool* w) {
  return IlaFamily::Put(r, w);
}
int AmlDesc::Put(AMLRecord* r, bool* w) {
  return AmlFamily::Put(r, w);
}
int DaDesc::Put(DARecord* r, bool* w) {
  return DaFamily::Put(r, w);
}
int SmDesc::Put(SMRecord* r, bool* w) {
  return SmFamily::Put(r, w);
}
int ArDesc::Put(ARRecord* r, bool* w) {
  return ArFamily::Put(r, w);
}
int AmlaDesc::Put(AMLARecord* r, bool* w) {
  return AmlaFamily::Put(r, w);
}
int DmgDesc::Put(DMGRecord* r, bool* w) {
  return DmgFamily::Put(r, w);
}
int DodlDesc::Put(DODLRecord* r, bool* w) {
  return DodlFamily::Put(r, w);
}
int DmDesc::Put(DMRecord* r, bool* w) {
  return DmFamily::Put(r, w);
}

const KindApi& DpKindApi() {
  return DpFamily::Api();
}
const KindApi& DslaKindApi() {
  return DslaFamily::Api();
}
const KindApi& IlaKindApi() {
  return IlaFamily::Api();
}
const KindApi& AmlKindApi() {
  return AmlFamily::Api();
}
const KindApi& DaKindApi() {
  return DaFamily::Api();
}
const KindApi& SmKindApi() {
  return SmFamily::Api();
}
const KindApi& ArKindApi() {
  return ArFamily::Api();
}
const KindApi& AmlaKindApi() {
  return AmlaFamily::Api();
}
const KindApi& DmgKindApi() {
  return DmgFamily::Api();
}
const KindApi& DodlKindApi() {
  return DodlFamily::Api();
}

}  // namespace qv

using qv::AmlaFamily;
using qv::AmlFamily;
using qv::ArFamily;
using qv::DaFamily;
using qv::DmgFamily;
using qv::DodlFamily;
using qv::DpFamily;
using qv::DslaFamily;
using qv::IlaFamily;
using qv::InstallKey;
using qv::SmFamily;

QV_DEFINE_INSTALL_CONTENT_OPERATIONS(DP, DpFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(DSLA, DslaFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(ILA, IlaFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(AML, AmlFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(DA, DaFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(SM, SmFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(AR, ArFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(AMLA, AmlaFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(DMG, DmgFamily)
QV_DEFINE_INSTALL_CONTENT_OPERATIONS(DODL, DodlFamily)

extern "C" {

int MPDeleteDP(const char* installName, const char* productName, const char* productVersion) {
  return qv::DeleteInInstalls<DpFamily>(
      InstallKey<DpFamily>(installName, productName, productVersion));
}
int MPDeleteDSLA(const char* installName, const char* languageCode) {
  return qv::DeleteInInstalls<DslaFamily>(InstallKey<DslaFamily>(installName, languageCode));
}
int MPDeleteILA(const char* installName, const char* languageCode) {
  return qv::DeleteInInstalls<IlaFamily>(InstallKey<IlaFamily>(installName, languageCode));
}
int MPDeleteAML(const char* installName, const char* languageCode, const char* moduleName,
                const char* moduleVersion, const char* aliasLanguageCode) {
  return qv::DeleteInInstalls<AmlFamily>(InstallKey<AmlFamily>(
      installName, languageCode, moduleName, moduleVersion, aliasLanguageCode));
}
int MPDeleteDA(const char* installName, uint32_t adId) {
  DaFamily::Key key = InstallKey<DaFamily>(installName, nullptr);
  if (adId != 0) key.parts[0] = std::to_string(adId);
  return qv::DeleteInInstalls<DaFamily>(key);
}
int MPDeleteSM(const char* installName, uint32_t mediaNumber) {
  SmFamily::Key key = InstallKey<SmFamily>(installName, nullptr);
  if (mediaNumber != 0) key.parts[0] = std::to_string(mediaNumber);
  return qv::DeleteInInstalls<SmFamily>(key);
}
int MPDeleteAR(const char* installName, const char* archiveName) {
  return qv::DeleteInInstalls<ArFamily>(InstallKey<ArFamily>(installName, archiveName));
}
int MPDeleteAMLA(const char* installName, const char* archiveName, const char* moduleName,
                 const char* moduleVersion, const char* languageCode) {
  return qv::DeleteInInstalls<AmlaFamily>(
      InstallKey<AmlaFamily>(installName, archiveName, moduleName, moduleVersion, languageCode));
}
int MPDeleteDMG(const char* installName, const char* groupName, const char* groupVersion) {
  return qv::DeleteInInstalls<DmgFamily>(
      InstallKey<DmgFamily>(installName, groupName, groupVersion));
}
int MPDeleteDODL(const char* installName, const char* osLanguageCode, const char* docLanguageCode) {
  return qv::DeleteInInstalls<DodlFamily>(
      InstallKey<DodlFamily>(installName, osLanguageCode, docLanguageCode));
}

}  // extern "C"
