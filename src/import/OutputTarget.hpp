#pragma once
// Where an output path leads: the file a symbolic link points to is replaced, the link kept. Links
// are followed one at a time, each checked as the kernel's protected-symlinks rule would, rather
// than resolved wholesale (realpath would follow links that open(2) refuses to).
#include <sys/stat.h>

#include <string>

namespace tolven::import {

struct OutputTarget {
    std::string folder;      // the folder that holds (or will hold) the file
    std::string name;        // its name there
    bool exists = false;     // a regular file of that name exists (its status is in status)
    bool in_place = false;   // a device, pipe or socket: written as it is, never replaced
    struct stat status {};
};

// Raises "TOLVEN:import:OutputNotWritable" (path, reason) for a folder, a dangling link, a loop of
// links (or a chain longer than 40), and a link in a sticky world-writable folder that belongs to
// neither the user nor the folder's owner.
OutputTarget resolve_output_target(const std::string& path);

}  // namespace tolven::import
