
[SourceSafe]
$Header$

[Resources]
"IDS_WELCOME","Willkommen beim Pelham-Setup.",101,"Title of the first page"
"IDS_EXIT","Wollen Sie Setup wirklich beenden?",102,
"IDS_DISK","Bitte legen Sie die Diskette ^"Disk 2^" ein.",203,"Number not yet updated"
"MP_GEN_0001_00000000041","Texteditor",,"Module name"
"IDS_LICENSE","Lizenzvertrag",106,
