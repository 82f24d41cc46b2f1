/* Settings records: the INI, registry and preference-setting entries a
 * module's installation makes, the entries it creates, and what ties them
 * to the module, its shipped files and the development registry keys.
 *
 * Every module has one settings file (catalogue kind "SSR",
 * "<profile>\SSR\*.ssr"), found by its "[Module]" line "Name","Key2". The
 * first write of entries to a module without one makes it: the module line,
 * then the empty sections "File System-Settings", "Module System-Settings",
 * "System-Settings Records", "Shipped File Created SSRs", "Module Created
 * SSRs" and "Created System-Settings", in that order.
 *
 * Settings entries (section "System-Settings Records", the three kinds
 * mixed in one section, one line each):
 *   RE  "Name","REG","CF1","CF2","CF3","<flags>","Data","HKEY_...","KeyPath",
 *       "ValueName","REG_...","AuxText","KEY_... ","REG_OPTION_...",
 *       "Description","<subkey>","<value name>","<value>"
 *   PE  the same with "PS" and a "ZQFKEY_..." type
 *   IE  "Name","INI","CF1","CF2","CF3","<flags>","Data","Section","Key",
 *       "Description","<subkey>","<value name>","<value>"
 * CF1..CF3, AuxText, access and option names, Description and the three
 * per-language words may be empty. A put of one kind rewrites only that
 * kind's lines: the other kinds' lines stay, in their order, before them.
 *
 * Data: for REG_BINARY, REG_DWORD, REG_DWORD_BIG_ENDIAN, ZQFKEY_BINARY and
 * ZQFKEY_DWORD the line holds hex pairs ("00 A5 4E 01", commas and blanks
 * allowed) and Data the bytes, DataLength their count. A DWORD reads as
 * the number written most significant byte first and is stored least
 * significant byte first (REG_DWORD_BIG_ENDIAN alike, deliberately); a
 * DWORD not made of four pairs is reported ("REG DWORD entry must consist
 * of exactly four pairs of hex digits", "PS DWORD ...") and kept with its
 * length; it is always written as four bytes. Every other type keeps the
 * text as written.
 *
 * Reading: an empty access text gives 0x2001F, empty options 0; leading
 * backslashes of KeyPath are removed; a REG entry loses EntryFlags bit 0.
 * A PS entry gets SecondType ZQFKEY_NONE. A module without a settings file,
 * or a file without the section, gives an empty list.
 *
 * Names: an entry written with an empty Name gets "MP_GEN_" + the open
 * profile's five-character tag + an eight-digit counter (MP_GEN_0417_00000012),
 * one above the numbers the file and the list already use; a put copies the
 * name into the caller's record.
 *
 * Created entries (CIE, CRE, CPE; section "Created System-Settings"):
 *   CRE/CPE "Name","REG"|"PS","CF1","CF2","CF3","<flags>","HKEY_...","KeyPath",
 *           "AuxText","Description","<subkey>","<value name>","<value>"
 *   CIE     "Name","INI","CF1","CF2","CF3","<flags>","Section","Key",
 *           "Description","<subkey>","<value name>","<value>"
 * Their names are generated as above, counted within their own section.
 *
 * Associations (the file must exist: "Settings Record (.SSR ) file
 * associated with module %s,%s cannot be found or opened!"):
 *   MOSR "Module System-Settings"     "SSRName"
 *   SFSR "File System-Settings"       "Language","GroupName","FileName","SSRName"
 *   MOCR "Module Created SSRs"        "CSSRName"
 *   SFCR "Shipped File Created SSRs"  "Language","GroupName","FileName","CSSRName"
 * Renaming or deleting a shipped file renames or deletes its SFSR and SFCR
 * lines.
 *
 * Development-key index "<profile>\SSR\DRKSSR.DSI" (catalogue kind "DSI"),
 * sections "DRKSSRs" and "DRKCSSRs":
 *   "DRKName","SSRName","ModuleName","ModuleKey2","Text40"
 * A missing index reports "DRK SSR Index cannot be found or opened!" ("DRK
 * CSSR Index ..."). The Orvik store holds no index.
 *
 * Reading needs an open profile, changing a locked one. Results are 1 and
 * 0; failures have been reported. */
#ifndef QUORVEX_SETTINGS_H_
#define QUORVEX_SETTINGS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* Ordinals (QuorvexProcByOrdinal and the Windows exports). */
#define QV_ORDINAL_MPGetIECompleteList 1400
#define QV_ORDINAL_MPPutIECompleteList 1401
#define QV_ORDINAL_MPGetIE 1402
#define QV_ORDINAL_MPPutIE 1403
#define QV_ORDINAL_MPDeleteIE 1404
#define QV_ORDINAL_MPCopyIE 1405
#define QV_ORDINAL_MPFindIENode 1406
#define QV_ORDINAL_MPNewIE 1407
#define QV_ORDINAL_MPFreeIE 1408
#define QV_ORDINAL_MPFreeIEList 1409
#define QV_ORDINAL_MPNewIEList 1410
#define QV_ORDINAL_MPAddIEAt 1411
#define QV_ORDINAL_MPInsertIEAfter 1412
#define QV_ORDINAL_MPAppendIE 1413
#define QV_ORDINAL_MPSetIENode 1414
#define QV_ORDINAL_MPDeleteIENode 1415
#define QV_ORDINAL_MPRemoveIENode 1416
#define QV_ORDINAL_MPClearIEList 1417
#define QV_ORDINAL_MPGetRECompleteList 1418
#define QV_ORDINAL_MPPutRECompleteList 1419
#define QV_ORDINAL_MPGetRE 1420
#define QV_ORDINAL_MPPutRE 1421
#define QV_ORDINAL_MPDeleteRE 1422
#define QV_ORDINAL_MPCopyRE 1423
#define QV_ORDINAL_MPFindRENode 1424
#define QV_ORDINAL_MPNewRE 1425
#define QV_ORDINAL_MPFreeRE 1426
#define QV_ORDINAL_MPFreeREList 1427
#define QV_ORDINAL_MPNewREList 1428
#define QV_ORDINAL_MPAddREAt 1429
#define QV_ORDINAL_MPInsertREAfter 1430
#define QV_ORDINAL_MPAppendRE 1431
#define QV_ORDINAL_MPSetRENode 1432
#define QV_ORDINAL_MPDeleteRENode 1433
#define QV_ORDINAL_MPRemoveRENode 1434
#define QV_ORDINAL_MPClearREList 1435
#define QV_ORDINAL_MPGetPECompleteList 1436
#define QV_ORDINAL_MPPutPECompleteList 1437
#define QV_ORDINAL_MPGetPE 1438
#define QV_ORDINAL_MPPutPE 1439
#define QV_ORDINAL_MPDeletePE 1440
#define QV_ORDINAL_MPCopyPE 1441
#define QV_ORDINAL_MPFindPENode 1442
#define QV_ORDINAL_MPNewPE 1443
#define QV_ORDINAL_MPFreePE 1444
#define QV_ORDINAL_MPFreePEList 1445
#define QV_ORDINAL_MPNewPEList 1446
#define QV_ORDINAL_MPAddPEAt 1447
#define QV_ORDINAL_MPInsertPEAfter 1448
#define QV_ORDINAL_MPAppendPE 1449
#define QV_ORDINAL_MPSetPENode 1450
#define QV_ORDINAL_MPDeletePENode 1451
#define QV_ORDINAL_MPRemovePENode 1452
#define QV_ORDINAL_MPClearPEList 1453
#define QV_ORDINAL_MPGetCIECompleteList 1454
#define QV_ORDINAL_MPPutCIECompleteList 1455
#define QV_ORDINAL_MPGetCIE 1456
#define QV_ORDINAL_MPPutCIE 1457
#define QV_ORDINAL_MPDeleteCIE 1458
#define QV_ORDINAL_MPCopyCIE 1459
#define QV_ORDINAL_MPFindCIENode 1460
#define QV_ORDINAL_MPNewCIE 1461
#define QV_ORDINAL_MPFreeCIE 1462
#define QV_ORDINAL_MPFreeCIEList 1463
#define QV_ORDINAL_MPNewCIEList 1464
#define QV_ORDINAL_MPAddCIEAt 1465
#define QV_ORDINAL_MPInsertCIEAfter 1466
#define QV_ORDINAL_MPAppendCIE 1467
#define QV_ORDINAL_MPSetCIENode 1468
#define QV_ORDINAL_MPDeleteCIENode 1469
#define QV_ORDINAL_MPRemoveCIENode 1470
#define QV_ORDINAL_MPClearCIEList 1471
#define QV_ORDINAL_MPGetCRECompleteList 1472
#define QV_ORDINAL_MPPutCRECompleteList 1473
#define QV_ORDINAL_MPGetCRE 1474
#define QV_ORDINAL_MPPutCRE 1475
#define QV_ORDINAL_MPDeleteCRE 1476
#define QV_ORDINAL_MPCopyCRE 1477
#define QV_ORDINAL_MPFindCRENode 1478
#define QV_ORDINAL_MPNewCRE 1479
#define QV_ORDINAL_MPFreeCRE 1480
#define QV_ORDINAL_MPFreeCREList 1481
#define QV_ORDINAL_MPNewCREList 1482
#define QV_ORDINAL_MPAddCREAt 1483
#define QV_ORDINAL_MPInsertCREAfter 1484
#define QV_ORDINAL_MPAppendCRE 1485
#define QV_ORDINAL_MPSetCRENode 1486
#define QV_ORDINAL_MPDeleteCRENode 1487
#define QV_ORDINAL_MPRemoveCRENode 1488
#define QV_ORDINAL_MPClearCREList 1489
#define QV_ORDINAL_MPGetCPECompleteList 1490
#define QV_ORDINAL_MPPutCPECompleteList 1491
#define QV_ORDINAL_MPGetCPE 1492
#define QV_ORDINAL_MPPutCPE 1493
#define QV_ORDINAL_MPDeleteCPE 1494
#define QV_ORDINAL_MPCopyCPE 1495
#define QV_ORDINAL_MPFindCPENode 1496
#define QV_ORDINAL_MPNewCPE 1497
#define QV_ORDINAL_MPFreeCPE 1498
#define QV_ORDINAL_MPFreeCPEList 1499
#define QV_ORDINAL_MPNewCPEList 1500
#define QV_ORDINAL_MPAddCPEAt 1501
#define QV_ORDINAL_MPInsertCPEAfter 1502
#define QV_ORDINAL_MPAppendCPE 1503
#define QV_ORDINAL_MPSetCPENode 1504
#define QV_ORDINAL_MPDeleteCPENode 1505
#define QV_ORDINAL_MPRemoveCPENode 1506
#define QV_ORDINAL_MPClearCPEList 1507
#define QV_ORDINAL_MPGetSSR 1520
#define QV_ORDINAL_MPCreateSSR 1521
#define QV_ORDINAL_MPPutSSR 1522
#define QV_ORDINAL_MPFreeSSR 1523
#define QV_ORDINAL_MPDeleteSSR 1524
#define QV_ORDINAL_MPGetCSSR 1525
#define QV_ORDINAL_MPCreateCSSR 1526
#define QV_ORDINAL_MPPutCSSR 1527
#define QV_ORDINAL_MPFreeCSSR 1528
#define QV_ORDINAL_MPGetSSRFlagNames 1529
#define QV_ORDINAL_MPGetSSRModifySubkeyFlagNames 1530
#define QV_ORDINAL_MPGetSSRModifyValueNameFlagNames 1531
#define QV_ORDINAL_MPGetSSRModifyValueFlagNames 1532
#define QV_ORDINAL_MPGetCSSRFlagNames 1533
#define QV_ORDINAL_MPGetMOSRCompleteList 1540
#define QV_ORDINAL_MPPutMOSRCompleteList 1541
#define QV_ORDINAL_MPGetMOSR 1542
#define QV_ORDINAL_MPPutMOSR 1543
#define QV_ORDINAL_MPDeleteMOSR 1544
#define QV_ORDINAL_MPGetMOSRFlagNames 1545
#define QV_ORDINAL_MPNewMOSR 1546
#define QV_ORDINAL_MPFreeMOSR 1547
#define QV_ORDINAL_MPFreeMOSRList 1548
#define QV_ORDINAL_MPNewMOSRList 1549
#define QV_ORDINAL_MPAddMOSRAt 1550
#define QV_ORDINAL_MPInsertMOSRAfter 1551
#define QV_ORDINAL_MPAppendMOSR 1552
#define QV_ORDINAL_MPSetMOSRNode 1553
#define QV_ORDINAL_MPDeleteMOSRNode 1554
#define QV_ORDINAL_MPRemoveMOSRNode 1555
#define QV_ORDINAL_MPClearMOSRList 1556
#define QV_ORDINAL_MPGetSFSRCompleteList 1557
#define QV_ORDINAL_MPPutSFSRCompleteList 1558
#define QV_ORDINAL_MPGetSFSR 1559
#define QV_ORDINAL_MPPutSFSR 1560
#define QV_ORDINAL_MPDeleteSFSR 1561
#define QV_ORDINAL_MPGetSFSRFlagNames 1562
#define QV_ORDINAL_MPNewSFSR 1563
#define QV_ORDINAL_MPFreeSFSR 1564
#define QV_ORDINAL_MPFreeSFSRList 1565
#define QV_ORDINAL_MPNewSFSRList 1566
#define QV_ORDINAL_MPAddSFSRAt 1567
#define QV_ORDINAL_MPInsertSFSRAfter 1568
#define QV_ORDINAL_MPAppendSFSR 1569
#define QV_ORDINAL_MPSetSFSRNode 1570
#define QV_ORDINAL_MPDeleteSFSRNode 1571
#define QV_ORDINAL_MPRemoveSFSRNode 1572
#define QV_ORDINAL_MPClearSFSRList 1573
#define QV_ORDINAL_MPGetMOCRCompleteList 1574
#define QV_ORDINAL_MPPutMOCRCompleteList 1575
#define QV_ORDINAL_MPGetMOCR 1576
#define QV_ORDINAL_MPPutMOCR 1577
#define QV_ORDINAL_MPDeleteMOCR 1578
#define QV_ORDINAL_MPGetMOCRFlagNames 1579
#define QV_ORDINAL_MPNewMOCR 1580
#define QV_ORDINAL_MPFreeMOCR 1581
#define QV_ORDINAL_MPFreeMOCRList 1582
#define QV_ORDINAL_MPNewMOCRList 1583
#define QV_ORDINAL_MPAddMOCRAt 1584
#define QV_ORDINAL_MPInsertMOCRAfter 1585
#define QV_ORDINAL_MPAppendMOCR 1586
#define QV_ORDINAL_MPSetMOCRNode 1587
#define QV_ORDINAL_MPDeleteMOCRNode 1588
#define QV_ORDINAL_MPRemoveMOCRNode 1589
#define QV_ORDINAL_MPClearMOCRList 1590
#define QV_ORDINAL_MPGetSFCRCompleteList 1591
#define QV_ORDINAL_MPPutSFCRCompleteList 1592
#define QV_ORDINAL_MPGetSFCR 1593
#define QV_ORDINAL_MPPutSFCR 1594
#define QV_ORDINAL_MPDeleteSFCR 1595
#define QV_ORDINAL_MPGetSFCRFlagNames 1596
#define QV_ORDINAL_MPNewSFCR 1597
#define QV_ORDINAL_MPFreeSFCR 1598
#define QV_ORDINAL_MPFreeSFCRList 1599
#define QV_ORDINAL_MPNewSFCRList 1600
#define QV_ORDINAL_MPAddSFCRAt 1601
#define QV_ORDINAL_MPInsertSFCRAfter 1602
#define QV_ORDINAL_MPAppendSFCR 1603
#define QV_ORDINAL_MPSetSFCRNode 1604
#define QV_ORDINAL_MPDeleteSFCRNode 1605
#define QV_ORDINAL_MPRemoveSFCRNode 1606
#define QV_ORDINAL_MPClearSFCRList 1607
#define QV_ORDINAL_MPGetDRKSSRCompleteList 1610
#define QV_ORDINAL_MPPutDRKSSRCompleteList 1611
#define QV_ORDINAL_MPPutDRKSSR 1612
#define QV_ORDINAL_MPDeleteDRKSSR 1613
#define QV_ORDINAL_MPNewDRKSSR 1614
#define QV_ORDINAL_MPFreeDRKSSR 1615
#define QV_ORDINAL_MPFreeDRKSSRList 1616
#define QV_ORDINAL_MPNewDRKSSRList 1617
#define QV_ORDINAL_MPAddDRKSSRAt 1618
#define QV_ORDINAL_MPInsertDRKSSRAfter 1619
#define QV_ORDINAL_MPAppendDRKSSR 1620
#define QV_ORDINAL_MPSetDRKSSRNode 1621
#define QV_ORDINAL_MPDeleteDRKSSRNode 1622
#define QV_ORDINAL_MPRemoveDRKSSRNode 1623
#define QV_ORDINAL_MPClearDRKSSRList 1624
#define QV_ORDINAL_MPGetDRKCSSRCompleteList 1625
#define QV_ORDINAL_MPPutDRKCSSRCompleteList 1626
#define QV_ORDINAL_MPPutDRKCSSR 1627
#define QV_ORDINAL_MPDeleteDRKCSSR 1628
#define QV_ORDINAL_MPNewDRKCSSR 1629
#define QV_ORDINAL_MPFreeDRKCSSR 1630
#define QV_ORDINAL_MPFreeDRKCSSRList 1631
#define QV_ORDINAL_MPNewDRKCSSRList 1632
#define QV_ORDINAL_MPAddDRKCSSRAt 1633
#define QV_ORDINAL_MPInsertDRKCSSRAfter 1634
#define QV_ORDINAL_MPAppendDRKCSSR 1635
#define QV_ORDINAL_MPSetDRKCSSRNode 1636
#define QV_ORDINAL_MPDeleteDRKCSSRNode 1637
#define QV_ORDINAL_MPRemoveDRKCSSRNode 1638
#define QV_ORDINAL_MPClearDRKCSSRList 1639

/* SSRType: the type byte of an entry and its tag on the line. */
#define SSR_TYPE_INI 1 /* "INI" */
#define SSR_TYPE_PS 3  /* "PS" */
#define SSR_TYPE_REG 4 /* "REG" */

/* EntryFlags of an entry (first flag letter is bit 31). Bit 0 is cleared
 * whenever a REG entry is read. */
#define SSR_LOCAL 0x20000000u
#define SSR_NETWORK 0x10000000u
#define SSR_WORKSTATION 0x08000000u
#define SSR_MIGRATE_MINOR_VERSIONS 0x04000000u
#define SSR_REPLACEABLE_PARAMETERS 0x02000000u
#define SSR_SET_AT_DEINSTALL 0x01000000u
#define SSR_DONT_REPLACE 0x00800000u
/* EntryFlags of a created entry. */
#define CSSR_REMOVE_ALL 0x04000000u /* all subkeys and values, or an INI section */

/* The access mask an entry without access names gets. */
#define SSR_DEFAULT_ACCESS 0x2001Fu

/* Preference-setting types (PE DataType). */
#define ZQFKEY_BINARY 0x80000001u
#define ZQFKEY_DWORD 0x80000002u
#define ZQFKEY_EXPAND_SZ 0x80000003u
#define ZQFKEY_MULTI_SZ 0x80000004u
#define ZQFKEY_NONE 0x80000005u
#define ZQFKEY_SZ 0x80000006u
#define ZQFKEY_ZQWORDSTRING 0x80000007u
#define ZQFKEY_LOGICAL 0x80000008u

/* The body every settings entry shares; Type says which members count. */
typedef struct SSRData {
  char ModuleName[41]; /* the owning module, from the file */
  char ModuleKey2[11];
  char Name[21];   /* unique in the module's file; generated when empty */
  uint8_t Type;    /* SSR_TYPE_* */
  char CFKey1[41]; /* the created file it belongs to, or all empty */
  char CFKey2[41];
  char CFKey3[11];
  char Data[3000];     /* text, or the bytes of binary and DWORD types */
  uint16_t DataLength; /* bytes in Data for binary and DWORD types, else 0 */
  uint32_t EntryFlags; /* SSR_* */
  uint32_t Access;     /* REG, PS: KEY_* rights */
  char ValueName[31];  /* REG, PS */
  uint32_t DataType;   /* REG: 0 (REG_NONE) to 8; PS: ZQFKEY_* */
  uint32_t SecondType; /* PS: ZQFKEY_NONE once read; not on the line */
  uint32_t Options;    /* REG, PS: QV_REG_OPTION_VOLATILE or 0 */
  uint32_t Root;       /* REG, PS: HKEY_* handle value */
  char KeyPath[129];   /* REG, PS: below the root, no leading backslash */
  char AuxText[261];   /* REG, PS: carried unchanged */
  char Section[261];   /* INI */
  char Key[261];       /* INI */
} SSRData;

/* One entry of the list of any of the three kinds. */
typedef struct SSRRecord {
  SSRData row;
  uint32_t recordFlags; /* RECORD_IAO for an entry read behind ";IAO;" */
  char Description[385];
  /* One bit per language, BR bit 31 down to CT bit 4. */
  uint32_t ModifySubkeyFlags;
  uint32_t ModifyValueNameFlags;
  uint32_t ModifyValueFlags;
  uint32_t lineNumber;
} SSRRecord;
typedef SSRRecord IERecord;
typedef SSRRecord RERecord;
typedef SSRRecord PERecord;

/* The body of a created entry: it names what the installation creates and
 * carries no value. */
typedef struct CSSRData {
  char ModuleName[41];
  char ModuleKey2[11];
  char Name[21];
  uint8_t Type; /* SSR_TYPE_* */
  char CFKey1[41];
  char CFKey2[41];
  char CFKey3[11];
  uint32_t EntryFlags; /* CSSR_REMOVE_ALL and the SSR_ location bits */
  uint32_t Root;       /* REG, PS */
  char KeyPath[129];   /* REG, PS */
  char AuxText[261];   /* REG, PS */
  char Section[261];   /* INI: the first INI string */
  char Key[261];       /* INI: the second INI string */
} CSSRData;

typedef struct CSSRRecord {
  CSSRData row;
  uint32_t recordFlags;
  char Description[385];
  uint32_t ModifySubkeyFlags;
  uint32_t ModifyValueNameFlags;
  uint32_t ModifyValueFlags;
  uint32_t lineNumber;
} CSSRRecord;
typedef CSSRRecord CIERecord;
typedef CSSRRecord CRERecord;
typedef CSSRRecord CPERecord;

/* Associations: a settings record (or created one) applied with the module
 * as a whole, or with one shipped file of the module. */
typedef struct MOSRRow {
  char ModuleName[41];
  char ModuleKey2[11];
  char SSRName[21];
} MOSRRow;
typedef struct MOSRRecord {
  MOSRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MOSRRecord;

typedef struct SFSRRow {
  char ModuleName[41];
  char ModuleKey2[11];
  char Language[11]; /* the shipped file's key */
  char GroupName[21];
  char FileName[41];
  char SSRName[21];
} SFSRRow;
typedef struct SFSRRecord {
  SFSRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} SFSRRecord;

typedef struct MOCRRow {
  char ModuleName[41];
  char ModuleKey2[11];
  char CSSRName[21];
} MOCRRow;
typedef struct MOCRRecord {
  MOCRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MOCRRecord;

typedef struct SFCRRow {
  char ModuleName[41];
  char ModuleKey2[11];
  char Language[11];
  char GroupName[21];
  char FileName[41];
  char CSSRName[21];
} SFCRRow;
typedef struct SFCRRecord {
  SFCRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} SFCRRecord;

/* Index lines: which development key a settings record belongs to. */
typedef struct DRKSSRRow {
  char DRKName[21];
  char SSRName[21];
  char ModuleName[41];
  char ModuleKey2[11];
  char Text40[41]; /* carried unchanged */
} DRKSSRRow;
typedef struct DRKSSRRecord {
  DRKSSRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} DRKSSRRecord;

typedef struct DRKCSSRRow {
  char DRKName[21];
  char CSSRName[21];
  char ModuleName[41];
  char ModuleKey2[11];
  char Text40[41];
} DRKCSSRRow;
typedef struct DRKCSSRRecord {
  DRKCSSRRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} DRKCSSRRecord;

/* The operations of an entry kind (IE, RE, PE, CIE, CRE, CPE):
 * Get...CompleteList(module, key2, list, mode) reads the module's entries
 * of the kind (mode MODE_UPDATE checks the file out); Put...CompleteList
 * writes the list's entries of the kind in place of the kind's lines; Put
 * replaces the entry with the same Name in the module the entry names, or
 * appends it; Get and Delete take the module and the Name. A delete of a
 * name the module does not hold reports "Cannot delete a node not listed in
 * list". */
#define QV_DECLARE_SETTINGS_ENTRY(code, RecordType)                                               \
  typedef QvFlagNames code##FlagNames;                                                            \
  QV_DECLARE_LIST_OPERATIONS(code, RecordType)                                                    \
  QV_API int MPNew##code(RecordType** recordOut);                                                 \
  QV_API int MPFree##code(RecordType* record);                                                    \
  QV_API int MPGet##code##CompleteList(const char* moduleName, const char* moduleKey2,            \
                                       code##List** listOut, uint32_t mode);                      \
  QV_API int MPPut##code##CompleteList(const char* moduleName, const char* moduleKey2,            \
                                       code##List* list);                                         \
  QV_API int MPGet##code(const char* moduleName, const char* moduleKey2, const char* name,        \
                         RecordType** recordOut);                                                 \
  QV_API int MPPut##code(RecordType* record);                                                     \
  QV_API int MPDelete##code(const char* moduleName, const char* moduleKey2, const char* name);    \
  QV_API int MPCopy##code(RecordType** recordInOut, const RecordType* source, int mode,           \
                          code##List* list);                                                      \
  QV_API int MPFind##code##Node(const char* moduleName, const char* moduleKey2, const char* name, \
                                code##List* list, RecordType** recordOut);

QV_DECLARE_SETTINGS_ENTRY(IE, IERecord)
QV_DECLARE_SETTINGS_ENTRY(RE, RERecord)
QV_DECLARE_SETTINGS_ENTRY(PE, PERecord)
QV_DECLARE_SETTINGS_ENTRY(CIE, CIERecord)
QV_DECLARE_SETTINGS_ENTRY(CRE, CRERecord)
QV_DECLARE_SETTINGS_ENTRY(CPE, CPERecord)

/* Flag tables: "System Settings Record" (mask 0x28000000), the three
 * per-language tables ("BR_MODIFYSUBKEY" ... "CT_MODIFYVALUE", mask 0) and
 * "Created System Settings Record". Each a new table for MPFreeFlagNames. */
QV_API int MPGetSSRFlagNames(QvFlagNames** tableOut);
QV_API int MPGetSSRModifySubkeyFlagNames(QvFlagNames** tableOut);
QV_API int MPGetSSRModifyValueNameFlagNames(QvFlagNames** tableOut);
QV_API int MPGetSSRModifyValueFlagNames(QvFlagNames** tableOut);
QV_API int MPGetCSSRFlagNames(QvFlagNames** tableOut);

/* A REG or a PS entry, whichever it is: the object owns the one it holds. */
typedef struct SSRObject {
  SSRData* data;   /* the held entry's body */
  SSRRecord* node; /* the held entry: recordFlags, Description, language words */
  RERecord* reg;   /* NULL unless a REG entry is held */
  PERecord* ps;    /* NULL unless a PS entry is held */
} SSRObject;

typedef struct CSSRObject {
  CSSRData* data;
  CSSRRecord* node;
  CRERecord* reg;
  CPERecord* ps;
} CSSRObject;

/* The REG entry of that name, else the PS one ("MPGetSSR could not retrieve
 * the SSR requested." when neither: INI entries are not found here). */
QV_API int MPGetSSR(const char* moduleName, const char* moduleKey2, const char* name,
                    SSRObject** objectOut);
/* A new empty entry of SSR_TYPE_REG or SSR_TYPE_PS ("Unsupported SSR Type,
 * cannot create SSR Object." for any other type). */
QV_API int MPCreateSSR(SSRObject** objectOut, uint32_t type);
/* MPPutRE or MPPutPE of the held entry ("MPPutSSR does not support this
 * SSRType!" when the object holds none). */
QV_API int MPPutSSR(SSRObject* object);
/* Frees the held entry and the object, and sets *object to NULL. Always 1. */
QV_API int MPFreeSSR(SSRObject** object);
/* Deletes the record's module association, its shipped-file associations
 * and its REG and PS entries, in that order. Always 1. */
QV_API int MPDeleteSSR(const char* moduleName, const char* moduleKey2, const char* name);

QV_API int MPGetCSSR(const char* moduleName, const char* moduleKey2, const char* name,
                     CSSRObject** objectOut);
QV_API int MPCreateCSSR(CSSRObject** objectOut, uint32_t type);
QV_API int MPPutCSSR(CSSRObject* object);
QV_API int MPFreeCSSR(CSSRObject** object);

/* The association kinds: New, Free, the list operations,
 * Get...CompleteList(module, key2, list, mode), Put...CompleteList(module,
 * key2, list) (the section becomes the list), Put (the record names its
 * module), Get, Delete (NULL key parts match any value) and the flag table
 * ("Module Settings Record", "Shipped File Settings Record", "Module Created
 * Settings Record", "File Created Settings Record"; no labels). */
#define QV_DECLARE_SETTINGS_ASSOCIATION(code)                                          \
  typedef QvFlagNames code##FlagNames;                                                 \
  QV_DECLARE_LIST_OPERATIONS(code, code##Record)                                       \
  QV_API int MPNew##code(code##Record** recordOut);                                    \
  QV_API int MPFree##code(code##Record* record);                                       \
  QV_API int MPGet##code##CompleteList(const char* moduleName, const char* moduleKey2, \
                                       code##List** listOut, uint32_t mode);           \
  QV_API int MPPut##code##CompleteList(const char* moduleName, const char* moduleKey2, \
                                       code##List* list);                              \
  QV_API int MPPut##code(code##Record* record);                                        \
  QV_API int MPGet##code##FlagNames(code##FlagNames** tableOut);

QV_DECLARE_SETTINGS_ASSOCIATION(MOSR)
QV_DECLARE_SETTINGS_ASSOCIATION(SFSR)
QV_DECLARE_SETTINGS_ASSOCIATION(MOCR)
QV_DECLARE_SETTINGS_ASSOCIATION(SFCR)

QV_API int MPGetMOSR(const char* moduleName, const char* moduleKey2, const char* ssrName,
                     MOSRRecord** recordOut);
QV_API int MPDeleteMOSR(const char* moduleName, const char* moduleKey2, const char* ssrName);
QV_API int MPGetSFSR(const char* moduleName, const char* moduleKey2, const char* language,
                     const char* groupName, const char* fileName, const char* ssrName,
                     SFSRRecord** recordOut);
QV_API int MPDeleteSFSR(const char* moduleName, const char* moduleKey2, const char* language,
                        const char* groupName, const char* fileName, const char* ssrName);
QV_API int MPGetMOCR(const char* moduleName, const char* moduleKey2, const char* cssrName,
                     MOCRRecord** recordOut);
QV_API int MPDeleteMOCR(const char* moduleName, const char* moduleKey2, const char* cssrName);
QV_API int MPGetSFCR(const char* moduleName, const char* moduleKey2, const char* language,
                     const char* groupName, const char* fileName, const char* cssrName,
                     SFCRRecord** recordOut);
QV_API int MPDeleteSFCR(const char* moduleName, const char* moduleKey2, const char* language,
                        const char* groupName, const char* fileName, const char* cssrName);

/* The index: Get...CompleteList gives the lines of one development key
 * (compared with regard to case), or every line when drkName is NULL;
 * Put...CompleteList makes the section the list, so a caller changing one
 * key's lines passes the whole index. Put and Delete change one line,
 * known by DRKName, the record name and the module. */
#define QV_DECLARE_SETTINGS_INDEX(code, NameMember)                                              \
  QV_DECLARE_LIST_OPERATIONS(code, code##Record)                                                 \
  QV_API int MPNew##code(code##Record** recordOut);                                              \
  QV_API int MPFree##code(code##Record* record);                                                 \
  QV_API int MPGet##code##CompleteList(const char* drkName, code##List** listOut);               \
  QV_API int MPPut##code##CompleteList(code##List* list);                                        \
  QV_API int MPPut##code(code##Record* record);                                                  \
  QV_API int MPDelete##code(const char* drkName, const char* NameMember, const char* moduleName, \
                            const char* moduleKey2);

QV_DECLARE_SETTINGS_INDEX(DRKSSR, ssrName)
QV_DECLARE_SETTINGS_INDEX(DRKCSSR, cssrName)

QV_EXTERN_C_END

#endif /* QUORVEX_SETTINGS_H_ */
