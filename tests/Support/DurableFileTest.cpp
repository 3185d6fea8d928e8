#include "Support/DurableFile.h"

#include "Support/FileSizeLimit.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <system_error>

namespace tarn {
namespace {

namespace fs = std::filesystem;

TEST(DurableFile, WhatIsWrittenIsReadBackUnderAnyName)
{
    for (auto const& name : { std::string("\xff\xfe\n"), std::string(255, 'n') }) {
        TemporaryFolder const folder;
        for (auto const& content : { std::string("\0\xff\r\n", 4), std::string(300'000, 'x'), std::string() }) {
            replaceFileDurably(folder / name, content);
            EXPECT_EQ(readFile(folder / name), content) << name;
        }
        EXPECT_EQ(fileNames(folder.path()), std::set { name });
    }
}

TEST(DurableFile, OnlyItsOwnerMayReadItWhateverWasThereBefore)
{
    TemporaryFolder const folder;
    auto const mask = umask(0);
    createPrivateFolder(folder / "one" / "two");
    replaceFileDurably(folder / "file", "");
    fs::permissions(folder / "file", fs::perms(0666));
    replaceFileDurably(folder / "file", "");
    umask(0777);
    replaceFileDurably(folder / "masked", "");
    umask(mask);
    for (auto const* name : { "file", "masked" })
        EXPECT_EQ(fs::status(folder / name).permissions(), fs::perms(0600)) << name;
    for (auto const* name : { "one", "one/two" })
        EXPECT_EQ(fs::status(folder / name).permissions(), fs::perms(0700)) << name;
}

TEST(DurableFile, OfALinkWhatItPointsToIsReplaced)
{
    TemporaryFolder const folder;
    fs::create_directory(folder / "elsewhere");
    fs::create_symlink("elsewhere/second", folder / "first");
    fs::create_symlink(folder / "elsewhere/real", folder / "elsewhere/second");
    for (auto const* content : { "made through a dangling link", "replaced" }) {
        replaceFileDurably(folder / "first", content);
        EXPECT_TRUE(fs::is_symlink(folder / "first") && fs::is_symlink(folder / "elsewhere/second"));
        EXPECT_EQ(readFile(folder / "elsewhere/real"), content);
    }
    EXPECT_EQ(fileNames(folder / "elsewhere"), (std::set<std::string> { "real", "second" }));
}

TEST(DurableFile, AFailureIsReportedAndChangesNothing)
{
    TemporaryFolder const folder;
    replaceFileDurably(folder / "file", "old");
    fs::create_directory(folder / "directory");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder / "loop");
    fs::create_symlink("pipe", folder / "link to the pipe");
    auto const before = fileNames(folder.path());

    std::pair<char const*, std::errc> const rows[] {
        { "missing/file", std::errc::no_such_file_or_directory },
        { "file/file", std::errc::not_a_directory },
        { "directory", std::errc::is_a_directory },
        { "link to the pipe", std::errc::invalid_argument },
        { "loop", std::errc::too_many_symbolic_link_levels },
        { "file", std::errc::file_too_large },
    };
    FileSizeLimit const limit(4096);
    for (auto const& [name, error] : rows) {
        try {
            replaceFileDurably(folder / name, std::string(10'000, 'x'));
            ADD_FAILURE() << name;
        } catch (fs::filesystem_error const& failure) {
            EXPECT_EQ(failure.code(), error) << name;
        }
    }
    EXPECT_THROW(createPrivateFolder(folder / "file" / "folder"), fs::filesystem_error);
    EXPECT_EQ(readFile(folder / "file"), "old");
    EXPECT_EQ(readFile(folder / "pipe"), std::nullopt);
    EXPECT_EQ(fileNames(folder.path()), before);
}

TEST(DurableFile, AFileTooLargeToBeOursIsNotRead)
{
    TemporaryFolder const folder;
    replaceFileDurably(folder / "file", "");
    fs::resize_file(folder / "file", 16 << 20);
    EXPECT_EQ(readFile(folder / "file").value_or("").size(), 16u << 20);
    fs::resize_file(folder / "file", (16 << 20) + 1);
    EXPECT_EQ(readFile(folder / "file"), std::nullopt);
}

}
}
