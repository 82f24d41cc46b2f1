/* Development registry keys: the registry-administration file.
 *
 * "<profile>\REGADMIN\REGADMIN.RAM" holds three kinds, one section each,
 * one line a record:
 *   DRK    development registry keys      section "Development Reg Keys"
 *     "DRKName","DRKKey2","text1","text2","text3","text4","text5","text6",
 *     "text7","<32 flag letters>"
 *   DRKPR  which products a key belongs to section "Development Reg Key Products"
 *     "DRKName","text1","text2","<32 flag letters>"
 *   DVPR   development products            section "Development Products"
 *     "ProductCode","ProductName","<32 flag letters>"
 * The settings-record index ties settings records to development keys by
 * DRKName. The engine carries the texts without giving them a meaning;
 * their widths are the longest texts a line may hold. The flag tables have
 * no labels and mask 0.
 *
 * Keys compare with regard to case: DRK by DRKName and DRKKey2 (two lines
 * with the same name and different DRKKey2 are two records), DRKPR by its
 * three texts, DVPR by ProductCode. A put replaces the stored record with
 * the same key (keeping the stored key) or appends the record; a delete
 * removes every record with the key. Writing one section keeps every other
 * byte of the file, the other two sections included.
 *
 * Inactive DRK records: a DRK line hands its record's flags to the writer
 * with its first field and again with text1, text3, text5 and text7, so a
 * DRK record behind ";IAO;" would be written with ";IAO;" inside its line,
 * which no reader can read back. Such a record is refused by a put, and a
 * DRK list that holds one (read from a file that has an inactive DRK line)
 * is checked whole before the file is touched: the rewrite is refused, the
 * record named, and the file left as it was.
 *
 * A missing file reports "File regadmin.RAM cannot be found or opened!".
 * In an Orvik profile the kinds are the tables DRK, DRKPR and DVPR; a put
 * there is a plain insert of the row. */
#ifndef QUORVEX_DEVKEYS_H_
#define QUORVEX_DEVKEYS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

typedef struct DRKRow {
  char DRKName[21];
  char DRKKey2[11];
  char text1[21];
  char text2[129];
  char text3[129];
  char text4[261];
  char text5[41];
  char text6[41];
  char text7[101];
  uint32_t Flags;
} DRKRow;

typedef struct DRKRecord {
  DRKRow row;
  uint32_t recordFlags; /* RECORD_IAO for a record read behind ";IAO;" */
  uint32_t lineNumber;  /* where the record was read */
} DRKRecord;

typedef struct DRKPRRow {
  char DRKName[21];
  char text1[11];
  char text2[11];
  uint32_t Flags;
} DRKPRRow;

typedef struct DRKPRRecord {
  DRKPRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} DRKPRRecord;

typedef struct DVPRRow {
  char ProductCode[11];
  char ProductName[41];
  uint32_t Flags;
} DVPRRow;

typedef struct DVPRRecord {
  DVPRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} DVPRRecord;

typedef QvFlagNames DRKFlagNames;
typedef QvFlagNames DRKPRFlagNames;
typedef QvFlagNames DVPRFlagNames;

QV_DECLARE_LIST_OPERATIONS(DRK, DRKRecord)
QV_DECLARE_LIST_OPERATIONS(DRKPR, DRKPRRecord)
QV_DECLARE_LIST_OPERATIONS(DVPR, DVPRRecord)

/* The operations of each kind, as for every family: the complete list
 * (MODE_UPDATE checks the file out), a copy of one record (0 without a
 * message when there is none, and always in an Orvik profile), put, merge
 * of a list, delete (0 without a message when there is none), copy (mode 1
 * keeps the stored key and line number), the cursor search (an empty
 * DRKName or ProductCode takes the next record), the flag table, new,
 * free, release and the rewrite of the section from a list. */
QV_API int MPGetDRKCompleteList(DRKList** listOut, uint32_t mode);
QV_API int MPGetDRK(const char* drkName, const char* drkKey2, DRKRecord** recordOut);
QV_API int MPPutDRK(DRKRecord* record);
QV_API int MPPutDRKCompleteList(DRKList* list);
QV_API int MPDeleteDRK(const char* drkName, const char* drkKey2);
QV_API int MPCopyDRK(DRKRecord** recordInOut, const DRKRecord* source, int mode, DRKList* list);
QV_API int MPFindDRKNode(const char* drkName, const char* drkKey2, DRKList* list,
                         DRKRecord** recordOut);
QV_API int MPGetDRKFlagNames(DRKFlagNames** tableOut);
QV_API int MPNewDRK(DRKRecord** recordOut);
QV_API int MPFreeDRK(DRKRecord* record);
QV_API int MPReleaseDRK(DRKRecord** record);
QV_API int MPWriteDRKList(DRKList* list);

QV_API int MPGetDRKPRCompleteList(DRKPRList** listOut, uint32_t mode);
QV_API int MPGetDRKPR(const char* drkName, const char* text1, const char* text2,
                      DRKPRRecord** recordOut);
QV_API int MPPutDRKPR(DRKPRRecord* record);
QV_API int MPPutDRKPRCompleteList(DRKPRList* list);
QV_API int MPDeleteDRKPR(const char* drkName, const char* text1, const char* text2);
QV_API int MPCopyDRKPR(DRKPRRecord** recordInOut, const DRKPRRecord* source, int mode,
                       DRKPRList* list);
QV_API int MPFindDRKPRNode(const char* drkName, const char* text1, const char* text2,
                           DRKPRList* list, DRKPRRecord** recordOut);
QV_API int MPGetDRKPRFlagNames(DRKPRFlagNames** tableOut);
QV_API int MPNewDRKPR(DRKPRRecord** recordOut);
QV_API int MPFreeDRKPR(DRKPRRecord* record);
QV_API int MPReleaseDRKPR(DRKPRRecord** record);
QV_API int MPWriteDRKPRList(DRKPRList* list);

QV_API int MPGetDVPRCompleteList(DVPRList** listOut, uint32_t mode);
QV_API int MPGetDVPR(const char* productCode, DVPRRecord** recordOut);
QV_API int MPPutDVPR(DVPRRecord* record);
QV_API int MPPutDVPRCompleteList(DVPRList* list);
QV_API int MPDeleteDVPR(const char* productCode);
QV_API int MPCopyDVPR(DVPRRecord** recordInOut, const DVPRRecord* source, int mode, DVPRList* list);
QV_API int MPFindDVPRNode(const char* productCode, DVPRList* list, DVPRRecord** recordOut);
QV_API int MPGetDVPRFlagNames(DVPRFlagNames** tableOut);
QV_API int MPNewDVPR(DVPRRecord** recordOut);
QV_API int MPFreeDVPR(DVPRRecord* record);
QV_API int MPReleaseDVPR(DVPRRecord** record);
QV_API int MPWriteDVPRList(DVPRList* list);

QV_EXTERN_C_END

#endif /* QUORVEX_DEVKEYS_H_ */
