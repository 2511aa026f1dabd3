#pragma once
// Where the model repository database lives: one file, BARepository.mdb, in the folder of
// the program itself, shared by every document and by the desktop app and the
// command-line tool (both are built into one folder).

#include <filesystem>
#include <string>
#include <string_view>

namespace ba {

inline constexpr std::string_view kRepositoryFileName = "BARepository.mdb";
// Names the database file itself, for tests and for installations whose program folder
// cannot be written.
inline constexpr const char* kRepositoryEnvironmentVariable = "BA_REPOSITORY";

// The program's own file path with everything after its last folder separator replaced by
// the database name. Both separators count, so a Windows path and a Linux path give the
// same answer; a path without a folder gives the bare name.
std::string RepositoryPathBesideProgram(std::string_view programPath);

// BA_REPOSITORY when set and not empty; otherwise the database beside the running program
// (on Linux read from /proc/self/exe), or in the working folder when the program's own
// path cannot be learnt.
std::filesystem::path DefaultRepositoryPath();

} // namespace ba
