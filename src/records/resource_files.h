// What closing needs of the resource family: the resource files held open
// while the profile is, written back when they changed.
#ifndef QUORVEX_RECORDS_RESOURCE_FILES_H_
#define QUORVEX_RECORDS_RESOURCE_FILES_H_

namespace qv {

// Writes back every changed open resource file (while the profile is still
// locked), frees every entry and empties the table.
void WriteBackResourceFiles();

}  // namespace qv

#endif  // QUORVEX_RECORDS_RESOURCE_FILES_H_
