#include "Profiles/DataStoreRemoval.h"

namespace tarn {

namespace {

// Keeps itself alive through the callbacks it waits for.
class Removal : public std::enable_shared_from_this<Removal> {
public:
    Removal(platform::WebEngine& engine, platform::RunLoop& runLoop, Uuid const& identifier,
        DataStoreRemoval::Completion completion)
        : m_engine(engine)
        , m_runLoop(runLoop)
        , m_identifier(identifier)
        , m_completion(std::move(completion))
    {
    }

    void attempt()
    {
        ++m_attempt;
        m_engine.removeDataStore(m_identifier,
            [self = shared_from_this()](std::optional<std::string> error) { self->didAttempt(std::move(error)); });
    }

private:
    void didAttempt(std::optional<std::string> error)
    {
        if (!error || m_attempt == DataStoreRemoval::attempts) {
            m_completion(std::move(error));
            return;
        }
        m_timer = m_runLoop.after(DataStoreRemoval::pause, [self = shared_from_this()] { self->attempt(); });
    }

    platform::WebEngine& m_engine;
    platform::RunLoop& m_runLoop;
    Uuid m_identifier;
    DataStoreRemoval::Completion m_completion;
    std::unique_ptr<platform::Timer> m_timer;
    int m_attempt { 0 };
};

}

void DataStoreRemoval::start(
    platform::WebEngine& engine, platform::RunLoop& runLoop, Uuid const& identifier, Completion completion)
{
    std::make_shared<Removal>(engine, runLoop, identifier, std::move(completion))->attempt();
}

}
