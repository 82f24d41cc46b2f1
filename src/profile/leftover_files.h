// What writes cut short by a crash leave beside the profile files.
//
// A rewrite puts a file's next version beside it as ".<name>.XXXXXX" (six
// letters and digits chosen by mkstemp) and renames it over the file; a
// batch of rewrites keeps each next version in ".<name>.staged" until the
// batch ends (written there by a replacement of its own, through
// "..<name>.staged.XXXXXX"). A process killed in between leaves these
// files behind, and nothing else ever removes them.
#ifndef QUORVEX_PROFILE_LEFTOVER_FILES_H_
#define QUORVEX_PROFILE_LEFTOVER_FILES_H_

namespace qv {

// Removes such leftovers from the folders of the profile at directory that
// the engine writes profile files into. Only a caller holding the
// profile's lock may: then no other writer can be using them. A name counts
// only when it has one of those three shapes exactly, with the name a
// profile file of that folder has or had (its kind's pattern) for <name>
// and six letters and digits for XXXXXX; nothing else is touched.
void RemoveLeftoverFiles(const char* directory);

}  // namespace qv

#endif  // QUORVEX_PROFILE_LEFTOVER_FILES_H_
