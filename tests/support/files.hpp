#pragma once
// Files for tests: temporary documents, their content, the bundled examples.

#include <filesystem>
#include <string>

namespace tolven::testing {

// A new empty folder under the system's temporary folder, unique to this process.
std::filesystem::path fresh_folder();

// A file of the given content in a fresh temporary folder; returns its path.
std::string write_temp_file(const std::string& name, const std::string& content);

// The whole content of a file.
std::string slurp(const std::string& path);

// The path of a bundled example, e.g. example("catalog.xml").
std::string example(const std::string& name);

}  // namespace tolven::testing
