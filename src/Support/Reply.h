#pragma once

#include <functional>
#include <utility>

namespace tarn {

// The way to answer a question, exactly once: whoever lets go of it without an answer has given the safe one.
template <typename T> class Reply {
public:
    Reply(std::function<void(T)> send, T ifDropped)
        : m_send(std::move(send))
        , m_ifDropped(std::move(ifDropped))
    {
    }
    Reply(Reply&& other) noexcept
        : m_send(std::exchange(other.m_send, nullptr))
        , m_ifDropped(std::move(other.m_ifDropped))
    {
    }
    Reply& operator=(Reply&& other) noexcept
    {
        Reply moved(std::move(other));
        std::swap(m_send, moved.m_send);
        std::swap(m_ifDropped, moved.m_ifDropped);
        return *this;
    }
    ~Reply()
    {
        if (m_send)
            std::exchange(m_send, nullptr)(std::move(m_ifDropped));
    }

    // Only the first answer counts.
    void operator()(T answer) &&
    {
        if (m_send)
            std::exchange(m_send, nullptr)(std::move(answer));
    }

private:
    std::function<void(T)> m_send;
    T m_ifDropped;
};

}
