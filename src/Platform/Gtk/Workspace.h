#pragma once

#include "Platform/Workspace.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

namespace tarn::gtk {

class Workspace final : public platform::Workspace {
public:
    explicit Workspace(Log log)
        : m_log(std::move(log))
    {
    }

    void open(Url const&) override;
    void openFile(std::filesystem::path const&) override;
    void reveal(std::filesystem::path const&) override;

private:
    Log m_log;
    Lifetime m_lifetime;
};

}
