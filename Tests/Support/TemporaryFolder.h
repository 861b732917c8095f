#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace test {

// A folder for one test, gone with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() { EXPECT_NE(::mkdtemp(name.data()), nullptr); }
    ~TemporaryFolder() { std::filesystem::remove_all(name); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return name; }
    std::string operator/(const std::string& file) const { return name + "/" + file; }

private:
    std::string name = (std::filesystem::temp_directory_path() / "mivora-test-XXXXXX").string();
};

inline std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

} // namespace test
