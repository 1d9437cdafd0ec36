// The filter (".nbf") and display (".nbd") files of the notice board folder, addressed as FilterFolder +
// name + extension. A name normally passes ValidateFileName before it gets here, but names also come from
// the folder's own listing, so these are the last guard that nothing is written or deleted outside the
// folder. Pure file-system calls; board thread only (FilterFolder is read unguarded).
#pragma once

#include <string>

// The file of a filter or display: FilterFolder + Name + Extension, by plain concatenation (an empty
// FilterFolder means the current folder). False, with Path empty, when Name is not one plain file name
// ("", ".", "..", or holding '/', '\' or a NUL) or when that file is a link leading out of the folder or
// to nowhere. A name that only fails ValidateFileName's taste (spaces, other letters) still passes.
bool BoardFilePath(const std::string& Name, const std::string& Extension, std::string& Path);

// Deletes the file at Path. A folder is never removed, even an empty one that happens to match a
// listing's pattern; a link is removed itself, not its target. False when nothing was deleted.
bool DeleteBoardFile(const std::string& Path);
