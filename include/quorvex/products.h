/* Products (code PR), their sub-products (MP) and their modules (PM).
 *
 * In a Master Profile every product has a file of its own,
 * "<profile>\products\<name>.pr". The product record is the first line of
 * the file's section "Product":
 *   "Name","Version","TextIdA","TextIdB","SecondName","SecondVersion",
 *   "ThirdName","ThirdVersion","<32 flag letters>",Number
 * (Number may be empty or missing). The other sections hold the records
 * that hang off the product, each starting with the product's name and
 * version, filled from the file and never written on the line:
 *   "Sub-Products":  "SubProductName","SubProductVersion",Number,Y|N
 *   "Modules":       "ModuleName","ModuleVersion",Number,"<32 flag letters>"
 * (Number may be empty). In an Orvik profile each is a row of its table.
 *
 * A product is named by Name and Version, compared with regard to case; a
 * new product's file is made from the product header template and added to
 * version control with "Initial Revision.". Deleting a product first
 * deletes every install-product entry (DP, installs.h) that names it.
 *
 * The operations are those of modules (modules.h) under the code PR, and
 * those of the records of a module's file (modulecontents.h) under MP and
 * PM, keyed by the product's name and version; a product without a file
 * is reported as "File associated with product %s,%s cannot be found or
 * opened!". */
#ifndef QUORVEX_PRODUCTS_H_
#define QUORVEX_PRODUCTS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* Product flags ("Product"; mask 0xFF000000). Bit 23 has no label and is
 * kept as it stands in the files. */
#define PR_EXPANDABLE_IN_CUSTOM 0x80000000u /* "Expandable in custom dialog" */
#define PR_CUSTOM_INSTALL 0x40000000u       /* "Participates in Custom install" */
#define PR_MINIMUM_INSTALL 0x20000000u      /* "Participates in Minimum install" */
#define PR_STANDARD_INSTALL 0x10000000u     /* "Participates in Standard install" */
#define PR_LOCAL_INSTALL 0x08000000u        /* "Participates in Local install" */
#define PR_NETWORK_INSTALL 0x04000000u      /* "Participates in NetWork install" */
#define PR_WORKSTATION_INSTALL 0x02000000u  /* "Participates in Workstation install" */
/* "Software distribution may be triggered when this application starts" */
#define PR_DISTRIBUTION_ON_START 0x00800000u

/* Sub-product flag ("Master Product"; mask 0): the Y/N of the line. */
#define MP_MOST_IMPORTANT 0x00000001u /* "Most important product" */

/* Product-module flags ("Product Module"; mask 0x60000000). */
#define PM_REQUIRED 0x80000000u          /* "Required by the associated product" */
#define PM_SHIPS_ON_CD 0x40000000u       /* "Ships on CD" */
#define PM_SHIPS_ON_DISKETTE 0x20000000u /* "Ships on Diskette" */

typedef struct PRRow {
  char Name[41];
  char Version[11];
  char TextIdA[41]; /* ids of resource texts */
  char TextIdB[41];
  char SecondName[41]; /* stored and written unchanged */
  char SecondVersion[11];
  char ThirdName[41];
  char ThirdVersion[11];
  uint32_t Flags; /* PR_* */
  int32_t Number; /* optional, last on the line */
} PRRow;

typedef struct PRRecord {
  PRRow row;
  /* The text store's part. */
  char Attribute29[30];    /* carried, not on the line */
  char FileName[261];      /* the product file's name in products, without folder */
  uint32_t LineAttributes; /* RECORD_IAO for a line read behind ";IAO;" */
  uint32_t lineNumber;
} PRRecord;

typedef struct MPRow {
  char ProductName[41]; /* the product whose file holds it */
  char ProductVersion[11];
  char SubProductName[41];
  char SubProductVersion[11];
  int32_t Number; /* optional */
  uint32_t Flags; /* MP_MOST_IMPORTANT */
} MPRow;

typedef struct MPRecord {
  MPRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MPRecord;

typedef struct PMRow {
  char ProductName[41];
  char ProductVersion[11];
  char ModuleName[41]; /* a module (modules.h) */
  char ModuleVersion[11];
  int32_t Number; /* optional */
  uint32_t Flags; /* PM_* */
} PMRow;

typedef struct PMRecord {
  PMRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} PMRecord;

typedef QvFlagNames PRFlagNames;
typedef QvFlagNames MPFlagNames;
typedef QvFlagNames PMFlagNames;
QV_DECLARE_LIST_OPERATIONS(PR, PRRecord)
QV_DECLARE_LIST_OPERATIONS(MP, MPRecord)
QV_DECLARE_LIST_OPERATIONS(PM, PMRecord)

/* A copy of the product (name, version), or 0 and NULL ("Cannot get
 * Product out of Orvik profile." in an Orvik profile). */
QV_API int MPGetPR(const char* name, const char* version, PRRecord** recordOut);
QV_API int MPNewPR(PRRecord** recordOut);
QV_API int MPFreePR(PRRecord** record);
/* Writes the product's line into its file, making the file when the
 * product has none. With a parent the product is born from it as a module
 * is (MPPutMO): its file starts as a copy of the parent's and its two text
 * ids get fresh copies ("Parent Product Could Not be found to birth
 * Child." when the parent has no file). */
QV_API int MPPutPR(PRRecord** record, PRRecord* parent);
QV_API int MPCopyPR(PRRecord** recordInOut, const PRRecord* source, int mode, PRList* list);
QV_API int MPParsePR(char* line, PRRecord* record);
/* Deletes the install-product entries that name the product, then its
 * file (removed from version control) or its row. */
QV_API int MPDeletePR(const char* name, const char* version);
/* With mask 0x80000000 exactly: every install-product entry naming the
 * product, and in an Orvik profile its module and sub-product rows. Any
 * other mask does nothing. Always 1. */
QV_API int MPDeletePRReferences(const char* name, const char* version, uint32_t mask,
                                uint32_t unused1, uint32_t unused2);
/* Every product, in the order of the product files' names; a file without
 * a "Product" section is left out. */
QV_API int MPGetPRCompleteList(PRList** listOut);
/* As MPFindMONode. */
QV_API int MPFindPRNode(const char* name, const char* version, const char* fileName, PRList* list,
                        PRRecord** recordOut);
QV_API int MPGetPRFlagNames(PRFlagNames** tableOut);

QV_API int MPNewMP(MPRecord** recordOut);
QV_API int MPFreeMP(MPRecord* record);
QV_API int MPGetMPCompleteList(const char* productName, const char* productVersion,
                               MPList** listOut, uint32_t mode);
QV_API int MPPutMPCompleteList(const char* productName, const char* productVersion, MPList* list);
QV_API int MPPutMP(MPRecord* record);
/* NULL key parts match any value. */
QV_API int MPDeleteMP(const char* productName, const char* productVersion,
                      const char* subProductName, const char* subProductVersion);
QV_API int MPGetMPFlagNames(MPFlagNames** tableOut);

QV_API int MPNewPM(PMRecord** recordOut);
QV_API int MPFreePM(PMRecord* record);
QV_API int MPGetPMCompleteList(const char* productName, const char* productVersion,
                               PMList** listOut, uint32_t mode);
QV_API int MPPutPMCompleteList(const char* productName, const char* productVersion, PMList* list);
QV_API int MPPutPM(PMRecord* record);
/* NULL parts match any value: (NULL, NULL, module, version) is the
 * module in every product, which the database reaches in one step and the
 * text store product by product. */
QV_API int MPDeletePM(const char* productName, const char* productVersion, const char* moduleName,
                      const char* moduleVersion);
QV_API int MPGetPMFlagNames(PMFlagNames** tableOut);

QV_EXTERN_C_END

#endif /* QUORVEX_PRODUCTS_H_ */
