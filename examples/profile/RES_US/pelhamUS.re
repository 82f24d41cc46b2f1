
[SourceSafe]
$Header$

[Resources]
"IDS_WELCOME","Welcome to the Pelham Setup program.",101,"Title of the first page"
"IDS_EXIT","Are you sure you want to exit Setup?",102,
"IDS_DISK","Please insert the disk labelled ^"Disk 2^".",103,"Shown between disks"
"IDS_DONE","Setup is complete.",104,
"MP_GEN_0001_00000000041","Text Editor",,"Module name"
;IAO;"IDS_OLD_BANNER","Pelham 3.0",105,
