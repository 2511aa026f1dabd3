#include "io/ExportFileWriter.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ba {
namespace {

TEST(ExportFileWriter, NothingAppearsUnderTheTargetNameBeforeCommit)
{
    test::TempDir dir;
    dir.Write("out.txt", "old\n");
    const std::string line(99, 'x');
    {
        CExportFileWriter file(dir.Path("out.txt"));
        // More than one flush worth of 100-byte lines: the temporary file beside the target
        // receives whole lines only, and the target keeps its old contents.
        const std::size_t lines = CExportFileWriter::kFlushBytes / 100 + 10;
        for (std::size_t i = 0; i < lines; ++i) {
            file.Buffer().append(line);
            file.Buffer().push_back('\n');
            file.LineEnd();
        }
        const std::vector<std::string> names = dir.FileNames();
        ASSERT_EQ(names.size(), 2u);
        EXPECT_EQ(names[0], "out.txt");
        ASSERT_TRUE(names[1].starts_with("out.txt.tmp-")) << names[1];
        const std::string partial = dir.Read(names[1]);
        EXPECT_GE(partial.size(), CExportFileWriter::kFlushBytes);
        EXPECT_EQ(partial.size() % 100, 0u);
        EXPECT_EQ(dir.Read("out.txt"), "old\n");
        file.Commit();
    }
    EXPECT_EQ(dir.FileNames(), std::vector<std::string>{"out.txt"});
    EXPECT_EQ(dir.Read("out.txt").size(), (CExportFileWriter::kFlushBytes / 100 + 10) * 100);
}

TEST(ExportFileWriter, AnAbandonedFileLeavesNoTrace)
{
    test::TempDir dir;
    {
        CExportFileWriter file(dir.Path("out.txt"));
        file.Buffer().append("a line\n");
        file.LineEnd();
    }
    EXPECT_TRUE(dir.FileNames().empty());
}

} // namespace
} // namespace ba
