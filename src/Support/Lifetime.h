#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tarn {

// Guards a late callback: what guard() wraps does nothing once this object is gone. Declare it as the last member, so
// that it ends first.
class Lifetime {
public:
    Lifetime() = default;
    Lifetime(Lifetime const&) = delete;
    Lifetime& operator=(Lifetime const&) = delete;

    template <typename Function> auto guard(Function function) const
    {
        return [alive = std::weak_ptr<char>(m_alive), function = std::move(function)](auto&&... arguments) mutable {
            static_assert(std::is_void_v<std::invoke_result_t<Function&, decltype(arguments)...>>);
            if (auto const hold = alive.lock())
                function(std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    std::shared_ptr<char> m_alive { std::make_shared<char>() };
};

}
