// Files held by the process that made them, so that crashed processes do
// not use up names for good.
//
// A held file is locked from the moment its name appears until the process
// that made it deletes it (through DeleteFile) or ends, closing the File in
// between does not let go of the name. A file under such a name that no
// process holds was left by a crash: the next one to want the name removes
// it and takes the name. Names held by live processes are never touched.
#ifndef QUORVEX_PLATFORM_HELD_FILE_H_
#define QUORVEX_PLATFORM_HELD_FILE_H_

#include <string>

namespace qv {

class File;

// Creates path as a new held file, open for reading and writing. nullptr
// when a live process holds the name (*error EEXIST) or the file cannot be
// made (*error the errno).
File* CreateHeldFile(const std::string& path, int* error = nullptr);

// Lets go of a held name after its file was removed; DeleteFile calls it.
// host_path is the resolved path. Nothing happens for other names.
void ReleaseHeldName(const std::string& host_path);

// Lets go of every name held below the folder host_folder (a resolved path),
// as the end of the process would. For tests that remove a folder of theirs
// and go on in the same process: a name still held keeps its file from
// being removed on Windows (a file deleted while a handle is open lingers
// until the handle closes), and with it the folder.
void ReleaseHeldNamesBelow(const std::string& host_folder);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_HELD_FILE_H_
