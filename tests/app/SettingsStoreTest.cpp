#include "settings/SettingsStore.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace ba {
namespace {

constexpr SettingsRoot kMachine = SettingsRoot::LocalMachine;
constexpr SettingsRoot kUser = SettingsRoot::CurrentUser;
const std::string kSonic = "SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\SonicDialog\\";

// A file store in a scratch folder of its own.
struct ScratchStore {
    test::TempDir dir;
    std::unique_ptr<ISettingsStore> store = MakeFileSettingsStore(dir.Path("settings.json"));
};

TEST(SettingsPath, SplitsAtTheLastBackslash)
{
    struct Case {
        const char* path;
        const char* key;
        const char* name;
    };
    const Case cases[] = {
        {"SOFTWARE\\Vendor\\App\\Dialog\\Offset1", "SOFTWARE\\Vendor\\App\\Dialog", "Offset1"},
        {"Key\\Name", "Key", "Name"},
        {"\\Name", "", "Name"},
        {"Key\\", "Key", ""},
        {"NoBackslash", "", ""},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        const SettingsAddress address = SplitSettingsPath(c.path);
        EXPECT_EQ(address.keyPath, c.key) << c.path;
        EXPECT_EQ(address.valueName, c.name) << c.path;
    }
}

TEST(FileSettingsStore, ReadsBackWhatTheRegistryWouldGive)
{
    struct Case {
        const char* what;
        std::string written;
        std::optional<std::string> read;
    };
    std::string eAcute250;
    for (int i = 0; i < 250; ++i) eAcute250 += "\xC3\xA9";
    const Case cases[] = {
        {"plain number", "12.5", "12.5"},
        {"leading blanks kept, trailing removed", "  12.5  ", "  12.5"},
        {"every trailing white space removed", "7\t\r\n\v\f ", "7"},
        {"empty text is found", "", ""},
        {"only blanks", "   ", ""},
        {"250 characters fit the 251-byte buffer", std::string(250, 'x'), std::string(250, 'x')},
        {"251 characters do not", std::string(251, 'x'), std::nullopt},
        {"the limit counts trailing blanks before trimming", std::string(249, 'x') + "  ", std::nullopt},
        {"the limit counts Windows-1252 bytes, not UTF-8", eAcute250, eAcute250},
        {"text ends at a terminator", std::string("12\0junk", 7), "12"},
        {"characters outside Windows-1252 become '?'", "\xCE\xA9 ohm", "? ohm"},
    };
    for (const auto& c : cases) {
        ScratchStore s;
        ASSERT_TRUE(s.store->Write(kMachine, kSonic + "Value", c.written)) << c.what;
        EXPECT_EQ(s.store->Read(kMachine, kSonic + "Value"), c.read) << c.what;
    }
}

TEST(FileSettingsStore, MissingFileKeyOrValueIsNotFound)
{
    ScratchStore s;
    EXPECT_EQ(s.store->Read(kMachine, kSonic + "HPFreq"), std::nullopt);
    EXPECT_TRUE(s.dir.FileNames().empty()) << "reading must not create the file";
    ASSERT_TRUE(s.store->Write(kMachine, kSonic + "HPFreq", "1000"));
    EXPECT_EQ(s.store->Read(kMachine, kSonic + "LPFreq"), std::nullopt);
    EXPECT_EQ(s.store->Read(kMachine, "SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\HPFreq"), std::nullopt);
}

TEST(FileSettingsStore, WritingCreatesTheKeysAndKeepsOtherValues)
{
    ScratchStore s;
    ASSERT_TRUE(s.store->Write(kMachine, kSonic + "WindowLength", "64"));
    ASSERT_TRUE(s.store->Write(kMachine, kSonic + "Offset1", "3.5"));
    ASSERT_TRUE(s.store->Write(kMachine, "SOFTWARE\\Other\\Deep\\Key\\Name", "x"));
    ASSERT_TRUE(s.store->Write(kMachine, kSonic + "WindowLength", "128"));

    EXPECT_EQ(s.store->Read(kMachine, kSonic + "WindowLength"), "128");
    EXPECT_EQ(s.store->Read(kMachine, kSonic + "Offset1"), "3.5");
    EXPECT_EQ(s.store->Read(kMachine, "SOFTWARE\\Other\\Deep\\Key\\Name"), "x");

    // The file is keyed by root, then key path, then value name.
    const auto doc = nlohmann::json::parse(s.dir.Read("settings.json"));
    const nlohmann::json expected = {
        {"LocalMachine",
         {{"SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\SonicDialog", {{"Offset1", "3.5"}, {"WindowLength", "128"}}},
          {"SOFTWARE\\Other\\Deep\\Key", {{"Name", "x"}}}}}};
    EXPECT_EQ(doc, expected);
}

TEST(FileSettingsStore, PathWithoutBackslashAddressesTheUnnamedValueOfTheRoot)
{
    ScratchStore s;
    ASSERT_TRUE(s.store->Write(kMachine, "Units", "1"));
    EXPECT_EQ(s.store->Read(kMachine, "Other"), "1"); // both split to an empty key and name
    EXPECT_EQ(s.store->Read(kMachine, "\\"), "1");
}

TEST(FileSettingsStore, RootsAreKeptApart)
{
    ScratchStore s;
    ASSERT_TRUE(s.store->Write(kMachine, kSonic + "Units", "1"));
    EXPECT_EQ(s.store->Read(kUser, kSonic + "Units"), std::nullopt);
    ASSERT_TRUE(s.store->Write(kUser, kSonic + "Units", "0"));
    EXPECT_EQ(s.store->Read(kMachine, kSonic + "Units"), "1");
    EXPECT_EQ(s.store->Read(kUser, kSonic + "Units"), "0");
}

TEST(FileSettingsStore, NamesMatchWithoutRegardToCaseAndKeepTheirFirstSpelling)
{
    ScratchStore s;
    ASSERT_TRUE(s.store->Write(kMachine, "SOFTWARE\\Vendor\\MaxOffset", "10"));
    EXPECT_EQ(s.store->Read(kMachine, "software\\VENDOR\\maxoffset"), "10");
    ASSERT_TRUE(s.store->Write(kMachine, "Software\\vendor\\MAXOFFSET", "20"));
    const auto doc = nlohmann::json::parse(s.dir.Read("settings.json"));
    const nlohmann::json expected = {{"LocalMachine", {{"SOFTWARE\\Vendor", {{"MaxOffset", "20"}}}}}};
    EXPECT_EQ(doc, expected);
}

TEST(FileSettingsStore, DamagedFileIsNeitherReadNorReplaced)
{
    const std::string cases[] = {
        "{",
        "",
        "[]",
        "{\"LocalMachine\": 5}",
        "{\"LocalMachine\": {\"SOFTWARE\\\\Vendor\": [\"x\"]}}",
        "{\"LocalMachine\": {\"SOFTWARE\\\\Vendor\": {\"Units\": 1}}}",
        "{\"CurrentUser\": {\"K\": {\"V\": \"\xFF\xFE\"}}}", // not UTF-8
    };
    for (const auto& contents : cases) {
        ScratchStore s;
        s.dir.Write("settings.json", contents);
        EXPECT_EQ(s.store->Read(kMachine, "SOFTWARE\\Vendor\\Units"), std::nullopt) << contents;
        EXPECT_FALSE(s.store->Write(kMachine, "SOFTWARE\\Vendor\\Units", "2")) << contents;
        EXPECT_EQ(s.dir.Read("settings.json"), contents);
        EXPECT_EQ(s.dir.FileNames(), std::vector<std::string>{"settings.json"}) << contents;
    }
}

TEST(FileSettingsStore, OtherTopLevelMembersAreKept)
{
    ScratchStore s;
    s.dir.Write("settings.json", R"({"Comment": ["kept"], "CurrentUser": {"K": {"V": "u"}}})");
    ASSERT_TRUE(s.store->Write(kMachine, "K\\V", "m"));
    EXPECT_EQ(s.store->Read(kUser, "K\\V"), "u");
    EXPECT_EQ(s.store->Read(kMachine, "K\\V"), "m");
    EXPECT_EQ(nlohmann::json::parse(s.dir.Read("settings.json"))["Comment"], nlohmann::json::array({"kept"}));
}

TEST(FileSettingsStore, WritesLeaveOnlyTheSettingsFile)
{
    ScratchStore s;
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(s.store->Write(kMachine, kSonic + "Pick" + std::to_string(i), "1"));
    EXPECT_EQ(s.dir.FileNames(), std::vector<std::string>{"settings.json"});
}

TEST(FileSettingsStore, WriteIntoAMissingFolderIsRefused)
{
    test::TempDir dir;
    const auto store = MakeFileSettingsStore(dir.Path("no such folder") / "settings.json");
    EXPECT_FALSE(store->Write(kMachine, kSonic + "Units", "1"));
    EXPECT_TRUE(dir.FileNames().empty());
}

#if defined(__linux__)
TEST(DefaultSettingsFile, NamedByTheEnvironmentOrBesideTheProgram)
{
    const char* saved = std::getenv("BA_SETTINGS_FILE");
    const std::optional<std::string> restore = saved ? std::optional<std::string>(saved) : std::nullopt;

    ::setenv("BA_SETTINGS_FILE", "/some/where/my-settings.json", 1);
    EXPECT_EQ(DefaultSettingsFilePath(), std::filesystem::path("/some/where/my-settings.json"));
    ::setenv("BA_SETTINGS_FILE", "", 1);
    const auto beside = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "settings.json";
    EXPECT_EQ(DefaultSettingsFilePath(), beside);

    if (restore) ::setenv("BA_SETTINGS_FILE", restore->c_str(), 1);
    else ::unsetenv("BA_SETTINGS_FILE");
}
#endif

} // namespace
} // namespace ba
