#pragma once

#include "platform/files.h"

// What open files allow each other, kept by locks that all of this program's processes respect.
//
// Four bytes stand far behind the end of any file: "is read", "is written", "must not be read" and
// "must not be written". Who opens a file takes a shared lock on each that holds for it, and then
// looks whether anyone else holds one that contradicts it. As both sides first take and then look,
// no two that exclude each other are ever let in; at the worst, of two that come at the same
// moment, neither is. The locks belong to the open file, not the process, and go with its last
// descriptor. The file's bytes and times aren't touched.
//
// Programs that know nothing of this aren't held off, nor are their locks heeded. Where one of them
// locked the whole file first the marks behind its lock can't be told, and where the file system
// has no such locks there are none: nothing is refused then.
namespace pw {

// Takes the locks for a file that is opened for reading, and for writing too if `writes`. False if
// another open file of this or another process contradicts; the descriptor is to be closed then. It
// must be open for reading.
bool TakeSharing(int descriptor, bool writes, Sharing sharing);

// Whether anyone else has the file open.
bool IsOpenElsewhere(int descriptor);

}  // namespace pw
