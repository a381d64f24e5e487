// The fault that the injector causes in the program that it is loaded into, and the operation at which it
// does so.
//
// The driver describes one fault in the environment and starts the program with the injector preloaded:
//
//   LD_PRELOAD=libfaults.so FAULTS_ACTION=fail FAULTS_AT=17 FAULTS_KINDS=create,write FAULTS_ERRNO=28
//       kvamigrate replace ...
//
// Every call of the program that accesses the disk has a kind and a number, counted from 1 over all
// threads. The fault happens at the first operation from number FAULTS_AT on whose kind is in FAULTS_KINDS,
// or of any kind if that is empty. Operations on standard streams and on system folders neither count nor
// fail.
//
//   FAULTS_ACTION   list   no fault
//                   kill   SIGKILL before the operation
//                   part   half of the bytes of a write, then SIGKILL
//                   cut    a power cut: everything written since the last flush is lost, then SIGKILL. A
//                          program that ends before the fault loses what is not flushed at its end.
//                   fail   the operation fails with FAULTS_ERRNO
//                   short  reads, writes and copies handle half of the bytes
//                   run    the shell runs FAULTS_COMMAND to its end, then the operation continues
//                   memory allocation number FAULTS_AT since main() fails
//   FAULTS_LASTING  1: "fail", "short" and "memory" go on with every later operation of those kinds
//   FAULTS_LIST     file that gets a line "NUMBER KIND NAME" for each operation when the program ends, or the
//                   number of allocations for "memory"
//   FAULTS_REPORT   file that gets the line of the operation at which the fault happened
#pragma once

#include <cstddef>
#include <sys/types.h>

namespace faults {

enum class TKind {
  Open,    // for reading, folders included
  Create,  // open for writing
  Read,
  List,  // the next entry of a folder
  Look,  // attributes, links
  Write,
  Copy,  // from file to file by the system
  Size,
  Rename,
  Link,
  Unlink,
  MakeDir,
  Mode,
  Owner,
  Time,
  Label,
  Flush,
  Close,
  Lock,
  Dup,
  Thread,
};

// The result to be produced for an operation.
struct TVerdict {
  int Errno = 0;       // not 0: fails with it, without doing anything
  bool Short = false;  // handles half of the bytes
  bool Part = false;   // handles half of the bytes; then the process is killed
};

// Counts an operation and carries out the fault if it is due. Returns only if the process continues. `fd`
// is the file or folder of the operation, or AT_FDCWD; `path` is relative to it, or null.
TVerdict Operation(TKind kind, int fd, const char* path);

// Returns whether the operation must not be counted: the injector's own, or on files that are not part of
// the run.
bool IsForeign(int fd, const char* path);

[[noreturn]] void Kill();

// For the power cut: `fd` was written, or is flushed, or everything is flushed.
void NoteWritten(int fd);
void NoteFlushed(int fd);
void NoteAllFlushed();

// Returns whether this allocation fails.
bool FailsAllocation();

// Starts counting operations and allocations.
void Start();

}  // namespace faults
