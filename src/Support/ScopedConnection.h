#pragma once

#include <sigc++/connection.h>

#include <utility>

namespace tarn {

// Disconnects when it ends. To be replaced by sigc::scoped_connection once libsigc++ 3.6 is everywhere.
class ScopedConnection {
public:
    ScopedConnection() = default;
    ScopedConnection(sigc::connection connection)
        : m_connection(std::move(connection))
    {
    }
    ScopedConnection(ScopedConnection const&) = delete;
    ScopedConnection(ScopedConnection&& other) noexcept
        : m_connection(std::exchange(other.m_connection, {}))
    {
    }
    ScopedConnection& operator=(ScopedConnection&& other) noexcept
    {
        m_connection.disconnect();
        m_connection = std::exchange(other.m_connection, {});
        return *this;
    }
    ~ScopedConnection() { m_connection.disconnect(); }

private:
    sigc::connection m_connection;
};

}
