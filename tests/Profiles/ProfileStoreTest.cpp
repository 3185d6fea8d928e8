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
    ProfileStore::Environment environment()
    {
        return { [this] { return now; }, [this] { return numbered(++uuids); },
            [this](std::string const& line) { log.push_back(line); } };
    }

    // A store whose announcements are counted, with a first profile (number 1) and the given number of others.
    ProfileStore& open(int others = 0)
    {
        store = std::make_unique<ProfileStore>(folder, environment());
        for (int number = 1; number <= others; ++number)
            store->create("Profile " + std::to_string(number + 1), someApps);
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

    std::string importPicture()
    {
        replaceFileDurably(temporary / "Photo.JPG", "picture");
        return store->importAvatar(temporary / "Photo.JPG");
    }

    // The picture belongs to the profile from then on.
    std::string addPicture(Uuid id)
    {
        auto profile = *store->profile(id);
        profile.avatarFile = importPicture();
        store->update(profile);
        return *profile.avatarFile;
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
    open();
    EXPECT_TRUE(store->createdFresh());
    Profile const personal { numbered(1), "Personal", std::nullopt,
        { GoogleApp::allCases.begin(), GoogleApp::allCases.end() }, {}, Timestamp(1740821400s) };
    EXPECT_EQ(inMemory(), (SavedProfiles { { personal }, personal.id }));
    EXPECT_EQ(onDisk(), inMemory());
    for (auto const& made : { folder, folder.parent_path() })
        EXPECT_EQ(fs::status(made).permissions(), fs::perms(0700));

    expectNoWrite([this] {
        open();
        EXPECT_FALSE(store->createdFresh());
    });
    EXPECT_TRUE(log.empty());
}

TEST_F(ProfileStoreTest, RepairsInMemoryWhatTheFileGetsWrong)
{
    open(2);
    SavedProfiles broken { store->profiles(), numbered(99) };
    broken.profiles[2].id = broken.profiles[0].id;
    auto const text = ProfilesFile::encode(broken);
    replaceFileDurably(file, text);

    open();
    EXPECT_FALSE(store->createdFresh());
    EXPECT_EQ(store->activeID(), numbered(1));
    EXPECT_EQ(store->profiles(), std::vector(broken.profiles.begin(), broken.profiles.begin() + 2));
    EXPECT_EQ(readFile(file), text);
    EXPECT_EQ(log, std::vector { "[Profiles] dropped a second profile with the id " + numbered(1).string() });
}

TEST_F(ProfileStoreTest, AFileThatCannotBeUsedIsKeptAside)
{
    enum class Placed { directly, behindLink };
    std::pair<Placed, std::string> const rows[] {
        { Placed::directly, "" },
        { Placed::directly, "{" },
        { Placed::directly, R"({"activeID": "A0000000-0000-4000-8000-000000000001", "profiles": []})" },
        { Placed::directly, std::string((16 << 20) + 1, ' ') },
        { Placed::behindLink, "{" },
    };
    fs::create_directories(folder);
    auto nextName = [number = 0]() mutable {
        auto const suffix = ++number > 1 ? "-" + std::to_string(number) : "";
        return "profiles.unreadable-2025-03-01T09-30-00Z" + suffix + ".json";
    };
    for (auto const& [placed, content] : rows) {
        replaceFileDurably(temporary / "file", content);
        if (placed == Placed::directly) {
            fs::rename(temporary / "file", file);
        } else {
            fs::remove(file);
            fs::create_symlink(temporary / "file", file);
        }

        log.clear();
        auto const kept = nextName();
        EXPECT_TRUE(open().createdFresh());
        EXPECT_EQ(log, std::vector { "[Profiles] could not read profiles.json; kept as " + kept });
        EXPECT_EQ(fs::file_size(folder / kept), content.size());
        EXPECT_EQ(fs::is_symlink(file), placed == Placed::behindLink);
        EXPECT_EQ(onDisk(), inMemory());
    }

    auto const typeOfKept = [&] {
        EXPECT_TRUE(open().createdFresh());
        EXPECT_EQ(onDisk(), inMemory());
        fs::remove(file);
        return fs::symlink_status(folder / nextName()).type();
    };
    fs::remove(file);
    fs::create_directories(file / "with something in it");
    EXPECT_EQ(typeOfKept(), fs::file_type::directory);
    fs::create_symlink("profiles.json", file);
    EXPECT_EQ(typeOfKept(), fs::file_type::symlink);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(typeOfKept(), fs::file_type::fifo);
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
    open();
    EXPECT_TRUE(store->createdFresh());
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
    auto const change = [&](std::vector<int> const& ids, int active) {
        EXPECT_EQ(announced, ++expected);
        std::vector<Uuid> wanted;
        std::vector<Uuid> actual;
        std::ranges::transform(ids, std::back_inserter(wanted), numbered);
        std::ranges::transform(store->profiles(), std::back_inserter(actual), &Profile::id);
        EXPECT_EQ(actual, wanted);
        EXPECT_EQ(store->activeID(), numbered(active));
        EXPECT_EQ(store->active(), store->profile(numbered(active)));
    };

    auto const created = store->create(" Work ", someApps);
    change({ 1, 2, 3, 4 }, 1);
    EXPECT_EQ(created, (Profile { numbered(4), " Work ", std::nullopt, someApps, {}, Timestamp(1740821400s) }));
    EXPECT_EQ(store->profile(numbered(4)), created);

    store->setActive(numbered(2));
    change({ 1, 2, 3, 4 }, 2);

    Profile const other { numbered(2), "Other", "b.png", { GoogleApp::keep }, { { GoogleApp::keep, 2 } },
        Timestamp(1s) };
    store->update(other);
    change({ 1, 2, 3, 4 }, 2);
    EXPECT_EQ(store->profile(numbered(2)), other);

    store->remove(numbered(4));
    change({ 1, 2, 3 }, 2);
    store->remove(store->profiles()[1].id);
    change({ 1, 3 }, 1);

    store->replaceAll({ other, created }, numbered(4));
    change({ 2, 4 }, 4);
    store->replaceAll({ other, created, other }, numbered(99));
    change({ 2, 4 }, 2);
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
    std::pair<double, std::optional<double>> const rows[] { { 1.2, 1.2 }, { 1.0004, std::nullopt }, { 0.5, 0.5 },
        { 0.9996, std::nullopt }, { 1.0011, 1.0011 } };
    for (auto const& [factor, kept] : rows) {
        store->setZoom(factor, GoogleApp::drive, numbered(1));
        std::map<GoogleApp, double> zoom;
        if (kept)
            zoom = { { GoogleApp::drive, *kept } };
        EXPECT_EQ(store->active().zoom, zoom) << factor;
        EXPECT_EQ(onDisk(), inMemory());
    }
    EXPECT_EQ(announced, 0);
}

TEST_F(ProfileStoreTest, AppsAreShownInCatalogueOrder)
{
    using enum GoogleApp::Case;
    Profile const profile { .id = {},
        .name = "",
        .avatarFile = {},
        .enabledApps = { contacts, mail, keep, mail },
        .zoom = {},
        .createdAt = {} };
    EXPECT_EQ(profile.orderedApps(), (std::vector<GoogleApp> { mail, keep, contacts }));
}

TEST_F(ProfileStoreTest, ImportedPicturesHaveHarmlessNames)
{
    open();
    std::pair<char const*, char const*> const rows[] {
        { "Photo.JPG", ".jpg" },
        { "photo", ".png" },
        { ".hidden", ".png" },
        { "photo.", ".png" },
        { "a b.tar.webp", ".webp" },
        { "photo.p g", ".png" },
        { "photo.j\xc3\x89g", ".png" },
        { "photo.abcdefghij", ".abcdefghij" },
        { "photo.abcdefghijk", ".png" },
    };
    for (auto const& [source, extension] : rows) {
        replaceFileDurably(temporary / source, source);
        auto const name = store->importAvatar(temporary / source);
        EXPECT_EQ(name, numbered(uuids).string() + extension);
        EXPECT_EQ(readFile(folder / "avatars" / name), source);
        EXPECT_TRUE(fs::exists(temporary / source));
    }
    EXPECT_EQ(fs::status(folder / "avatars").permissions(), fs::perms(0700));

    auto const before = fileNames(folder / "avatars");
    EXPECT_THROW(store->importAvatar(temporary / "missing.png"), fs::filesystem_error);
    EXPECT_THROW(store->importAvatar(temporary.path()), fs::filesystem_error);
    {
        replaceFileDurably(temporary / "large.png", std::string(10'000, 'x'));
        FileSizeLimit const limit(4096);
        EXPECT_THROW(store->importAvatar(temporary / "large.png"), fs::filesystem_error);
    }
    EXPECT_EQ(fileNames(folder / "avatars"), before);
    EXPECT_EQ(announced, 0);
}

TEST_F(ProfileStoreTest, APictureIsOnlyFoundInItsFolder)
{
    auto profile = open().active();
    EXPECT_EQ(store->avatarImage(profile), std::nullopt);
    profile.avatarFile = importPicture();
    EXPECT_EQ(store->avatarImage(profile), folder / "avatars" / *profile.avatarFile);

    fs::create_directory(folder / "avatars" / "folder");
    for (std::string const name : { "", ".", "..", "folder", "missing.png", "../profiles.json", "/etc/passwd" }) {
        profile.avatarFile = name;
        EXPECT_EQ(store->avatarImage(profile), std::nullopt) << name;
    }
}

TEST_F(ProfileStoreTest, APictureGoesWithTheLastProfileThatShowsIt)
{
    open(3);
    auto const exists = [this](std::string const& name) { return fs::exists(folder / "avatars" / name); };
    auto const kept = addPicture(numbered(2));
    auto profile = *store->profile(numbered(2));
    profile.name = "Renamed";
    store->update(profile);
    EXPECT_TRUE(exists(kept));

    auto const changed = addPicture(numbered(2));
    EXPECT_FALSE(exists(kept));
    EXPECT_TRUE(exists(changed));

    auto sharing = *store->profile(numbered(3));
    sharing.avatarFile = changed;
    store->update(sharing);
    profile.avatarFile = std::nullopt;
    store->update(profile);
    EXPECT_TRUE(exists(changed));
    store->remove(numbered(3));
    EXPECT_FALSE(exists(changed));

    for (std::string const name : { "", ".", "..", "../profiles.json", "missing.png" }) {
        profile.avatarFile = name;
        store->update(profile);
        profile.avatarFile = std::nullopt;
        store->update(profile);
        EXPECT_TRUE(fs::exists(folder / "avatars")) << name;
        EXPECT_EQ(onDisk(), inMemory()) << name;
    }
    EXPECT_TRUE(log.empty());
}

TEST_F(ProfileStoreTest, AHandlerMayChangeTheStoreOrDisconnectOrEndIt)
{
    open(2);
    std::vector<Uuid> seen;
    sigc::connection once;
    once = store->profilesDidChange.connect([&] {
        once.disconnect();
        store->setActive(numbered(3));
        store->create("From the handler", someApps);
    });
    store->profilesDidChange.connect([&] { seen.push_back(store->activeID()); });
    EXPECT_EQ(store->create("Work", someApps).name, "Work");
    EXPECT_EQ(seen, std::vector(3, numbered(3)));
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
    for (int round = 0; round < 50; ++round) {
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
