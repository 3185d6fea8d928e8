#include "Profiles/ProfileStore.h"

#include "Support/DurableFile.h"
#include "Support/FileSizeLimit.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>

namespace tarn {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Failure = ProfileStore::Failure;

Uuid numbered(int number)
{
    auto const digits = std::to_string(number);
    return *Uuid::parse("A0000000-0000-4000-8000-" + std::string(12 - digits.size(), '0') + digits);
}

std::vector<GoogleApp> const someApps { GoogleApp::contacts, GoogleApp::mail };

class ProfileStoreTest : public testing::Test {
protected:
    // A store whose announcements are counted, with a first profile (number 1) and the given number of others.
    ProfileStore& open(int others = 0)
    {
        store = std::make_unique<ProfileStore>(folder,
            ProfileStore::Environment { [this] { return now; }, [this] { return numbered(++uuids); },
                [this](std::string const& line) { log.push_back(line); } });
        for (int number = 0; number < others; ++number)
            store->create("", someApps);
        store->profilesDidChange.connect([this] { ++announced; });
        return *store;
    }

    std::optional<SavedProfiles> onDisk() const { return ProfilesFile::decode(readFile(file).value_or("")); }
    SavedProfiles inMemory() const { return { store->profiles(), store->activeID() }; }

    // Marks the file without changing its meaning, so that any write shows.
    void expectNoWrite(std::function<void()> const& action)
    {
        auto const marked = *readFile(file) + " ";
        replaceFileDurably(file, marked);
        auto const before = inMemory();
        action();
        EXPECT_EQ(readFile(file), marked);
        EXPECT_EQ(inMemory(), before);
        EXPECT_EQ(announced, 0);
    }

    TemporaryFolder temporary;
    fs::path const folder { temporary / "Tarn" / "v2" };
    fs::path const file { folder / "profiles.json" };
    Timestamp now { 1740821400s + 123ms };
    int uuids { 0 };
    int announced { 0 };
    std::vector<std::string> log;
    std::unique_ptr<ProfileStore> store;
};

TEST_F(ProfileStoreTest, FirstRunMakesAProfileThatTheNextRunFinds)
{
    EXPECT_TRUE(open().createdFresh());
    Profile const personal { numbered(1), "Personal", std::nullopt,
        { GoogleApp::allCases.begin(), GoogleApp::allCases.end() }, {}, Timestamp(1740821400s) };
    EXPECT_EQ(inMemory(), (SavedProfiles { { personal }, personal.id }));
    EXPECT_EQ(onDisk(), inMemory());
    for (auto const& made : { folder, folder.parent_path() })
        EXPECT_EQ(fs::status(made).permissions(), fs::perms(0700));

    expectNoWrite([this] { EXPECT_FALSE(open().createdFresh()); });
    EXPECT_TRUE(log.empty());
}

TEST_F(ProfileStoreTest, RepairsInMemoryWhatTheFileGetsWrong)
{
    open(2);
    SavedProfiles broken { store->profiles(), numbered(99) };
    broken.profiles[2].id = broken.profiles[0].id;
    auto const text = ProfilesFile::encode(broken);
    replaceFileDurably(file, text);

    EXPECT_FALSE(open().createdFresh());
    EXPECT_EQ(store->activeID(), numbered(1));
    EXPECT_EQ(store->profiles(), std::vector(broken.profiles.begin(), broken.profiles.begin() + 2));
    EXPECT_EQ(readFile(file), text);
    EXPECT_EQ(log, std::vector { "[Profiles] dropped a second profile with the id " + numbered(1).string() });
}

TEST_F(ProfileStoreTest, AFileThatCannotBeUsedIsKeptAside)
{
    std::pair<char const*, std::function<void()>> const rows[] {
        { "not JSON", [&] { replaceFileDurably(file, "{"); } },
        { "no profiles",
            [&] {
                replaceFileDurably(file, ProfilesFile::encode({ {}, numbered(1) }));
            } },
        { "too large", [&] { replaceFileDurably(file, std::string((16 << 20) + 1, ' ')); } },
        { "a link", [&] { fs::create_symlink(temporary / "file", file); } },
        { "a folder", [&] { fs::create_directories(file / "with something in it"); } },
        { "a link to itself", [&] { fs::create_symlink(file, file); } },
        { "a pipe", [&] { EXPECT_EQ(mkfifo(file.c_str(), 0600), 0); } },
    };
    fs::create_directories(folder);
    replaceFileDurably(temporary / "file", "{");
    std::string suffix;
    for (int number = 1; auto const& [what, place] : rows) {
        SCOPED_TRACE(what);
        fs::remove_all(file);
        place();
        auto const type = fs::symlink_status(file).type();
        auto const content = readFile(file);
        bool const isLink = content && type == fs::file_type::symlink;

        log.clear();
        auto const kept = "profiles.unreadable-2025-03-01T09-30-00Z" + suffix + ".json";
        EXPECT_TRUE(open().createdFresh());
        EXPECT_EQ(log, std::vector { "[Profiles] could not read profiles.json; kept as " + kept });
        EXPECT_EQ(fs::symlink_status(folder / kept).type(), isLink ? fs::file_type::regular : type);
        EXPECT_TRUE(!content || readFile(folder / kept) == content);
        EXPECT_EQ(fs::is_symlink(file), isLink);
        EXPECT_EQ(onDisk(), inMemory());
        suffix = "-" + std::to_string(++number);
    }
}

TEST_F(ProfileStoreTest, WhatCannotBeKeptIsNotOverwritten)
{
    std::string const content(10'000, 'x');
    fs::create_directories(folder);
    replaceFileDurably(temporary / "file", content);
    fs::create_symlink(temporary / "file", file);
    {
        FileSizeLimit const limit(4096);
        open().create("Work", someApps);
    }
    std::string const line = "[Profiles] could not save: the unreadable profiles.json could not be kept: "
        + std::make_error_code(std::errc::file_too_large).message();
    EXPECT_EQ(log, (std::vector { line, line }));
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(readFile(file), content);
    EXPECT_EQ(fileNames(folder), std::set<std::string> { "profiles.json" });

    store->setZoom(1.2, GoogleApp::mail, numbered(1));
    EXPECT_EQ(readFile(folder / "profiles.unreadable-2025-03-01T09-30-00Z.json"), content);
    EXPECT_EQ(onDisk(), inMemory());
    EXPECT_EQ(store->profiles().size(), 2u);
}

TEST_F(ProfileStoreTest, AFailedSaveIsLoggedAndAnnouncedAndHoldsInMemory)
{
    replaceFileDurably(temporary / "Tarn", "in the way");
    EXPECT_TRUE(open().createdFresh());
    store->create("Work", someApps);
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(store->profiles().size(), 2u);
    auto const line = "[Profiles] could not save: " + std::make_error_code(std::errc::not_a_directory).message();
    EXPECT_EQ(log, (std::vector { line, line }));
}

TEST_F(ProfileStoreTest, EveryChangeIsOnDiskWhenItIsAnnouncedAndAnnouncedOnce)
{
    open(2);
    store->profilesDidChange.connect([this] { EXPECT_EQ(onDisk(), inMemory()); });
    int expected = 0;
    auto const expect = [&](std::vector<int> const& numbers, int active) {
        EXPECT_EQ(announced, ++expected);
        std::vector<Uuid> ids(numbers.size());
        std::ranges::transform(numbers, ids.begin(), numbered);
        EXPECT_TRUE(std::ranges::equal(store->profiles(), ids, {}, &Profile::id));
        EXPECT_EQ(store->activeID(), numbered(active));
        EXPECT_EQ(store->active(), store->profile(numbered(active)));
    };

    auto const created = store->create(" Work ", someApps);
    expect({ 1, 2, 3, 4 }, 1);
    EXPECT_EQ(created, (Profile { numbered(4), " Work ", std::nullopt, someApps, {}, Timestamp(1740821400s) }));
    EXPECT_EQ(store->profile(numbered(4)), created);

    store->setActive(numbered(2));
    expect({ 1, 2, 3, 4 }, 2);
    Profile const other { numbered(2), "Other", "b.png", { GoogleApp::keep }, { { GoogleApp::keep, 2 } },
        Timestamp(1s) };
    store->update(other);
    expect({ 1, 2, 3, 4 }, 2);
    EXPECT_EQ(store->profile(numbered(2)), other);
    store->remove(numbered(4));
    expect({ 1, 2, 3 }, 2);
    store->remove(store->profiles()[1].id);
    expect({ 1, 3 }, 1);
    store->replaceAll({ created, other, created }, numbered(2));
    expect({ 4, 2 }, 2);
    store->replaceAll({ created, other }, numbered(99));
    expect({ 4, 2 }, 4);
}

TEST_F(ProfileStoreTest, WhatIsRefusedChangesNothing)
{
    open();
    Profile const unknown { numbered(99), "Unknown", std::nullopt, {}, {}, now };
    auto noApps = store->active();
    noApps.enabledApps.clear();
    std::pair<Failure::Reason, std::function<void()>> const rows[] {
        { Failure::noApps, [&] { store->create("Work", {}); } },
        { Failure::notFound, [&] { store->update(unknown); } },
        { Failure::noApps, [&] { store->update(noApps); } },
        { Failure::notFound, [&] { store->remove(unknown.id); } },
        { Failure::lastProfile, [&] { store->remove(numbered(1)); } },
        { Failure::notFound, [&] { store->setActive(unknown.id); } },
    };
    expectNoWrite([&] {
        for (auto const& [reason, action] : rows) {
            try {
                action();
                ADD_FAILURE() << "not refused: " << Failure(reason).what();
            } catch (Failure const& failure) {
                EXPECT_EQ(failure.reason(), reason);
            }
        }
        store->setActive(numbered(1));
        store->setZoom(1.2, GoogleApp::mail, unknown.id);
        store->replaceAll({}, unknown.id);
    });
}

TEST_F(ProfileStoreTest, ZoomIsKeptWithoutAnnouncement)
{
    open();
    for (auto const factor : { 1.2, 1.0004, 0.5, 0.9996, 1.0011 }) {
        store->setZoom(factor, GoogleApp::drive, numbered(1));
        std::map<GoogleApp, double> const kept { { GoogleApp::drive, factor } };
        EXPECT_EQ(store->active().zoom, std::abs(factor - 1) < 0.001 ? decltype(kept) {} : kept) << factor;
        EXPECT_EQ(onDisk(), inMemory());
    }
    EXPECT_EQ(announced, 0);
}

TEST_F(ProfileStoreTest, AppsAreShownInCatalogueOrder)
{
    auto profile = open().active();
    profile.enabledApps = { GoogleApp::contacts, GoogleApp::mail, GoogleApp::keep, GoogleApp::mail };
    EXPECT_EQ(
        profile.orderedApps(), (std::vector<GoogleApp> { GoogleApp::mail, GoogleApp::keep, GoogleApp::contacts }));
}

TEST_F(ProfileStoreTest, ImportedPicturesHaveHarmlessNames)
{
    open();
    std::pair<char const*, char const*> const rows[] { { "Photo.JPG", ".jpg" }, { "photo", ".png" },
        { ".hidden", ".png" }, { "photo.", ".png" }, { "a b.tar.webp", ".webp" }, { "photo.p g", ".png" },
        { "photo.j\xc3\x89g", ".png" }, { "photo.abcdefghij", ".abcdefghij" }, { "photo.abcdefghijk", ".png" } };
    for (auto const& [source, extension] : rows) {
        replaceFileDurably(temporary / source, source);
        auto const name = store->importAvatar(temporary / source);
        EXPECT_EQ(name, numbered(uuids).string() + extension);
        EXPECT_EQ(readFile(folder / "avatars" / name), source);
        EXPECT_TRUE(fs::exists(temporary / source));
    }
    EXPECT_EQ(fs::status(folder / "avatars").permissions(), fs::perms(0700));

    auto const before = fileNames(folder / "avatars");
    replaceFileDurably(temporary / "large.png", std::string(10'000, 'x'));
    FileSizeLimit const limit(4096);
    for (auto const* source : { "missing.png", ".", "large.png" })
        EXPECT_THROW(store->importAvatar(temporary / source), fs::filesystem_error);
    EXPECT_EQ(fileNames(folder / "avatars"), before);
    EXPECT_EQ(announced, 0);
}

TEST_F(ProfileStoreTest, APictureGoesWithTheLastProfileThatShowsIt)
{
    open(2);
    auto const show = [this](int number, std::optional<std::string> name) {
        auto profile = *store->profile(numbered(number));
        profile.avatarFile = std::move(name);
        store->update(profile);
    };
    auto const first = store->importAvatar(file);
    show(2, first);
    // Still shown after an update of something else.
    show(2, first);
    EXPECT_EQ(store->avatarImage(*store->profile(numbered(2))), folder / "avatars" / first);

    auto const second = store->importAvatar(file);
    show(2, second);
    show(3, second);
    show(2, std::nullopt);
    EXPECT_EQ(fileNames(folder / "avatars"), std::set { second });
    store->remove(numbered(3));
    EXPECT_TRUE(fileNames(folder / "avatars").empty());
}

TEST_F(ProfileStoreTest, APictureIsFoundAndDeletedInItsFolderOnly)
{
    auto profile = open().active();
    EXPECT_EQ(store->avatarImage(profile), std::nullopt);
    auto const other = folder / "avatars" / "folder" / "other.png";
    fs::create_directories(other.parent_path());
    replaceFileDurably(other, "");
    for (auto const& name : { "", ".", "..", "folder", "missing.png", "folder/other.png", other.c_str() }) {
        profile.avatarFile = name;
        EXPECT_EQ(store->avatarImage(profile), std::nullopt) << name;
        store->update(profile);
        profile.avatarFile = std::nullopt;
        store->update(profile);
        EXPECT_TRUE(fs::exists(other)) << name;
    }
}

TEST_F(ProfileStoreTest, AHandlerMayChangeTheStoreOrDisconnectOrEndIt)
{
    open(2);
    int others = 0;
    sigc::connection once;
    once = store->profilesDidChange.connect([&] {
        once.disconnect();
        store->setActive(numbered(3));
        store->create("From the handler", someApps);
    });
    store->profilesDidChange.connect([&] { ++others; });
    EXPECT_EQ(store->create("Work", someApps).name, "Work");
    EXPECT_EQ(others, 3);
    EXPECT_EQ(store->profiles().size(), 5u);
    EXPECT_EQ(onDisk(), inMemory());

    store->profilesDidChange.connect([this] { store.reset(); });
    EXPECT_EQ(store->create("Last", someApps).name, "Last");
    EXPECT_EQ(onDisk()->profiles.size(), 6u);
}

// Runs in a child process until it is killed; says so after each save. The size of the file goes up and down.
[[noreturn]] void saveForever(fs::path const& folder, int pipe, int firstUuid)
{
    ProfileStore store(folder,
        { std::chrono::system_clock::now, [&] { return numbered(firstUuid++); }, [](auto const&) { _exit(1); } });
    for (;;) {
        if (store.profiles().size() < 20)
            store.create(std::string(1000, 'n'), someApps);
        else
            store.replaceAll({ store.active() }, store.activeID());
        if (write(pipe, "", 1) != 1)
            _exit(2);
    }
}

TEST_F(ProfileStoreTest, KilledAtAnyMomentLeavesAWholeFile)
{
    open();
    for (int round = 0; round < 20; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        auto const child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            saveForever(folder, ends[1], 1'000'000 * (round + 1));
        close(ends[1]);

        char saved[3];
        EXPECT_GT(read(ends[0], saved, sizeof saved), 0);
        for (int turns = std::rand() % 500; turns > 0; --turns)
            sched_yield();
        kill(child, SIGKILL);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;
        close(ends[0]);

        ASSERT_TRUE(onDisk()) << "round " << round;
        EXPECT_FALSE(open().createdFresh());
    }
    EXPECT_TRUE(log.empty());
}

}
}
