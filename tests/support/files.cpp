#include "support/files.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <fstream>
#include <iterator>

namespace tolven::testing {

// A new, empty folder every call: mkdtemp never hands out a name that exists, so a folder left by
// an earlier run whose process had the same id cannot leak its files into a test.
std::filesystem::path fresh_folder() {
    std::string name = (std::filesystem::temp_directory_path() / "tolven-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::filesystem::filesystem_error("mkdtemp", name, std::error_code(errno, std::generic_category()));
    return name;
}

std::string write_temp_file(const std::string& name, const std::string& content) {
    const auto path = fresh_folder() / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string example(const std::string& name) { return std::string(TOLVEN_SOURCE_DIR) + "/examples/" + name; }

}  // namespace tolven::testing
