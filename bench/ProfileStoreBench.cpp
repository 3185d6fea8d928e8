#include "Profiles/ProfileStore.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

using namespace tarn;

// A store with as many profiles as the benchmark's argument says, each with a picture's name and two zooms, in a folder
// of its own: $TMPDIR chooses the disk.
class ProfileStoreBench : public benchmark::Fixture {
public:
    void SetUp(benchmark::State& state) override
    {
        auto name = (std::filesystem::temp_directory_path() / "tarn-bench-XXXXXX").native();
        if (!mkdtemp(name.data()))
            throw std::runtime_error(name);
        folder = name;

        std::vector<Profile> profiles;
        for (std::int64_t number = 1; number <= state.range(0); ++number) {
            auto const id = Uuid::random();
            profiles.push_back({ id, "Profile " + std::to_string(number), id.string() + ".png",
                { GoogleApp::allCases.begin(), GoogleApp::allCases.end() },
                { { GoogleApp::mail, 1.2 }, { GoogleApp::drive, 0.8333333333333334 } }, environment.now() });
        }
        last = profiles.back().id;
        ProfileStore(folder, environment).replaceAll(profiles, last);
    }
    void TearDown(benchmark::State&) override { std::filesystem::remove_all(folder); }

    ProfileStore::Environment const environment { std::chrono::system_clock::now, Uuid::random,
        [](std::string const& line) { throw std::runtime_error(line); } };
    std::filesystem::path folder;
    Uuid last;
};

BENCHMARK_DEFINE_F(ProfileStoreBench, Load)(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ProfileStore(folder, environment).profiles().size());
}

// Everything that a change costs: encoding, writing, flushing, moving into place.
BENCHMARK_DEFINE_F(ProfileStoreBench, Save)(benchmark::State& state)
{
    ProfileStore store(folder, environment);
    double factor = 1.2;
    for (auto _ : state)
        store.setZoom(factor = 2.4 - factor / 2, GoogleApp::mail, last);
}

BENCHMARK_REGISTER_F(ProfileStoreBench, Load)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_REGISTER_F(ProfileStoreBench, Save)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond)->UseRealTime();

}
