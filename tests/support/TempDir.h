#pragma once
// A scratch folder for one test, removed with everything in it afterwards.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace ba::test {

class TempDir {
public:
    TempDir()
    {
        std::random_device rd;
        m_path = std::filesystem::temp_directory_path() / ("ba-test-" + std::to_string(rd()) + std::to_string(rd()));
        std::filesystem::create_directories(m_path);
    }
    ~TempDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::filesystem::path Path(const std::string& name) const { return m_path / name; }

    void Write(const std::string& name, const std::string& contents) const
    {
        std::ofstream(Path(name), std::ios::binary) << contents;
    }
    std::string Read(const std::string& name) const
    {
        std::ifstream in(Path(name), std::ios::binary);
        std::ostringstream s;
        s << in.rdbuf();
        return s.str();
    }
    std::vector<std::string> FileNames() const
    {
        std::vector<std::string> names;
        for (const auto& e : std::filesystem::directory_iterator(m_path)) names.push_back(e.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_path;
};

} // namespace ba::test
