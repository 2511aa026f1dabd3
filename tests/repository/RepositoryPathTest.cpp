#include "repository/RepositoryPath.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace ba {
namespace {

TEST(RepositoryPath, ReplacesEverythingAfterTheLastSeparator)
{
    struct Case {
        const char* program;
        const char* expected;
    };
    const Case cases[] = {
        {R"(C:\Program Files\BoreAnalyst\BoreAnalyst.exe)", R"(C:\Program Files\BoreAnalyst\BARepository.mdb)"},
        {"/opt/boreanalyst/bin/boreanalyst", "/opt/boreanalyst/bin/BARepository.mdb"},
        {R"(D:\mixed/dir\tool)", R"(D:\mixed/dir\BARepository.mdb)"},
        {"/opt/dir/", "/opt/dir/BARepository.mdb"},
        {"boreanalyst", "BARepository.mdb"},
        {"", "BARepository.mdb"},
    };
    for (const Case& c : cases) EXPECT_EQ(RepositoryPathBesideProgram(c.program), c.expected) << c.program;
}

// Sets an environment variable for one test and puts back what was there.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : m_name(name)
    {
        if (const char* old = std::getenv(name)) m_old = old;
        if (value != nullptr) setenv(name, value, 1);
        else unsetenv(name);
    }
    ~ScopedEnvironment()
    {
        if (m_old) setenv(m_name, m_old->c_str(), 1);
        else unsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

TEST(RepositoryPath, EnvironmentVariableNamesTheFile)
{
    const ScopedEnvironment named(kRepositoryEnvironmentVariable, "/tmp/elsewhere/models.db");
    EXPECT_EQ(DefaultRepositoryPath(), std::filesystem::path("/tmp/elsewhere/models.db"));
}

TEST(RepositoryPath, WithoutTheVariableTheFileIsBesideThisProgram)
{
    const ScopedEnvironment cleared(kRepositoryEnvironmentVariable, "");
    const std::filesystem::path path = DefaultRepositoryPath();
    EXPECT_EQ(path.filename(), "BARepository.mdb");
    EXPECT_EQ(path.parent_path(), std::filesystem::read_symlink("/proc/self/exe").parent_path());
}

} // namespace
} // namespace ba
